// Sessions in which real agents' recordings are played, with the keys that were typed, against what was so.

#include <gtest/gtest.h>

#include <algorithm>
#include <map>

#include "Agents/Looks.h"
#include "Orvane/Agents/SessionController.h"
#include "Platform/ManualMainLoop.h"
#include "Support/TemporaryFolder.h"
#include "TerminalEmulator/HeadlessTerminal.h"

namespace orvane::testing {
namespace {

using namespace std::chrono_literals;

/// A terminal whose program is the test.
class PlayedProcess final : public SessionProcess, public HeadlessTerminal {
 public:
    PlayedProcess(MainLoop& loop, const Look& look, SessionProcessEvents events)
        : HeadlessTerminal(loop, loop, {.cols = look.cols(), .rows = look.rows()}, {}), events_(std::move(events)) {}

    pid_t processId() const override { return 0; }
    pid_t foregroundProcessGroup() const override { return 0; }
    void terminate() override {}
    HeadlessTerminal* terminal() override { return this; }
    void setTerminalTitle(std::string_view /*title*/) override { hasNewTitle_ = true; }

    void print(std::string_view bytes) {
        dataReceived(bytes);
        events_.onActivity(bytes);
        if (std::exchange(hasNewTitle_, false)) events_.onTitle();
    }

 private:
    SessionProcessEvents events_;
    bool hasNewTitle_ = false;
};

class Player final : public SessionLauncher {
 public:
    Player(MainLoop& loop, const Look& look) : loop_(loop), look_(look) {}

    std::expected<std::unique_ptr<SessionProcess>, LaunchFailure> launch(const SessionController& /*session*/,
                                                                         SessionProcessEvents events) override {
        auto made = std::make_unique<PlayedProcess>(loop_, look_, std::move(events));
        program = made.get();
        return made;
    }

    PlayedProcess* program = nullptr;

 private:
    MainLoop& loop_;
    Look look_;
};

/// What a person sends at once: a text with its Return, or one key.
std::vector<std::string> inputsOf(std::string keys) {
    static const std::pair<std::string, std::string> names[] = {
        {"<Enter>", "\r"},    {"<C-u>", "\x15"},     {"<C-j>", "\n"},  {"<C-c>", "\x03"},
        {"<Escape>", "\x1b"}, {"<BTab>", "\x1b[Z"},  {"<Tab>", "\t"},  {"<Up>", "\x1b[A"},
        {"<Down>", "\x1b[B"}, {"<Right>", "\x1b[C"}, {"<Space>", " "}, {"<BSpace>", "\x7f"}};
    std::vector<std::string> inputs;
    bool mayJoin = false;  // a Return behind a text
    while (!keys.empty()) {
        const auto key = std::ranges::find_if(names, [&](const auto& name) { return keys.starts_with(name.first); });
        const std::size_t length = key == std::end(names) ? std::min(keys.find('<'), keys.size()) : key->first.size();
        if (key == std::end(names)) {
            inputs.push_back(keys.substr(0, length));
        } else if (mayJoin && key->second == "\r") {
            inputs.back() += '\r';
        } else {
            inputs.push_back(key->second);
        }
        mayJoin = key == std::end(names);
        keys.erase(0, length);
    }
    return inputs;
}

/// A session as long as its recording.
class PlayedSession {
 public:
    PlayedSession(const Look& look, std::size_t pieceLength)
        : pieceLength_(pieceLength), player_(loop_, look), recorded_(look.recorded()) {
        session_ = std::make_shared<SessionController>(
            SessionController::Identity{.id = Uuid(), .kind = look.kind(), .projectPath = home_.path()},
            SessionController::Appearance{},
            SessionController::Surroundings{.loop = loop_, .l10n = L10n(), .home = home_.path(), .log = {}});
        session_->launch(player_);
    }

    /// The status 8 s after the moment, in which nothing came.
    std::string statusAfter(const Look& look) {
        for (const std::string& input : inputsOf(look.keys)) {
            session_->type(input);
            loop_.advance(200ms);
        }
        print(look);
        loop_.advance(8s);
        return std::string(session_->status().name()) + " by " + std::string(rawValue(session_->evidence().source));
    }

    const SessionApproval& approval() const { return session_->approval(); }

 private:
    void print(const Look& look) {
        std::string bytes = "\x1b]0;" + look.title + "\a\x1b[2J\x1b[H";
        if (look.hasBytes()) {
            bytes = recorded_.substr(printed_, look.end() - printed_);
            printed_ = look.end();
        } else {
            for (const char byte : look.screen())
                bytes += byte == '\n' ? std::string("\r\n") : std::string(1, byte);
            bytes.erase(bytes.find_last_not_of("\r\n") + 1);
        }
        for (std::size_t at = 0; at < bytes.size(); at += pieceLength_) {
            player_.program->print(std::string_view(bytes).substr(at, pieceLength_));
            loop_.advance(100ms);
        }
    }

    std::size_t pieceLength_;
    TemporaryFolder home_;
    ManualMainLoop loop_;
    Player player_;
    std::string recorded_;
    std::size_t printed_ = 0;
    std::shared_ptr<SessionController> session_;
};

TEST(StatusReplayTest, isRightAtEveryMomentOfEveryRecording) {
    for (const std::size_t pieceLength : {200, 3000}) {
        std::map<std::string, std::unique_ptr<PlayedSession>> sessions;
        int decided = 0;
        for (const Look& look : looks()) {
            auto& session = sessions[look.recording];
            if (!session) session = std::make_unique<PlayedSession>(look, pieceLength);
            const std::string status = session->statusAfter(look);
            SCOPED_TRACE(look.recording + " " + look.moment + " in pieces of " + std::to_string(pieceLength));
            if (look.status == "any") continue;
            ++decided;
            EXPECT_TRUE(look.status.contains(status.substr(0, status.find(' ')))) << status << ", not " << look.status;
            if (look.status != "waiting" || look.question.empty()) continue;
            const auto& request = session->approval().pendingRequest;
            ASSERT_TRUE(request);
            EXPECT_EQ(request->detail, look.question);
            EXPECT_EQ(std::to_string(request->options.size()), look.options);
        }
        EXPECT_EQ(decided, 91);
    }
}

}  // namespace
}  // namespace orvane::testing
