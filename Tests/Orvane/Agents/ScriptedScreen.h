#pragma once

#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "Orvane/Agents/AgentLaunchSupport.h"
#include "Orvane/Agents/TerminalAgent.h"
#include "Orvane/StoreFixture.h"
#include "TerminalEmulator/HeadlessTerminal.h"

namespace orvane::testing {

/// A terminal without a program: a test writes what the program would, and sees what the program would read.
class ScriptedScreen final : public HeadlessTerminal {
 public:
    static constexpr int cols = 80;

    ScriptedScreen(MainLoop& loop, SessionProcessEvents events)
        : HeadlessTerminal(loop, loop, {.cols = cols, .rows = 24}, {}), events_(std::move(events)) {}

    void feed(std::string_view bytes) {
        dataReceived(bytes);
        events_.onActivity(bytes);
        if (std::exchange(hasNewTitle_, false)) events_.onTitle();
    }
    void exit(int waitStatus) { events_.onExit(waitStatus); }
    /// Everything that was typed since the last call.
    std::string taken() { return std::exchange(written_, {}); }

    void send(std::string_view bytes) override { written_ += bytes; }
    void setTerminalTitle(std::string_view /*title*/) override { hasNewTitle_ = true; }

 private:
    SessionProcessEvents events_;
    std::string written_;
    bool hasNewTitle_ = false;
};

/// Gives every session such a terminal, and Claude a file for its hooks. `process` is what it says its program is.
class ScriptedLauncher final : public SessionLauncher {
 public:
    ScriptedLauncher(MainLoop& loop, const std::string& folder) : loop_(loop), support_(folder, folder) {}

    std::expected<std::unique_ptr<SessionProcess>, LaunchFailure> launch(const SessionController& session,
                                                                         SessionProcessEvents events) override {
        if (auto feed = support_.additions(session).hookFeed) eventsPath = feed->eventsPath;
        auto made = std::make_unique<Process>(loop_, std::move(events), process);
        screen = made->screen();
        return made;
    }

    pid_t process = 0;
    ScriptedScreen* screen = nullptr;  ///< of the newest session
    std::string eventsPath;

 private:
    class Process final : public SessionProcess {
     public:
        Process(MainLoop& loop, SessionProcessEvents events, pid_t id) : screen_(loop, std::move(events)), id_(id) {}
        pid_t processId() const override { return id_; }
        pid_t foregroundProcessGroup() const override { return 0; }
        void terminate() override {}
        HeadlessTerminal* terminal() override { return &screen_; }
        ScriptedScreen* screen() { return &screen_; }

     private:
        ScriptedScreen screen_;
        pid_t id_;
    };

    MainLoop& loop_;
    AgentLaunchSupport support_;
};

/// One agent on such a terminal, in a store on a manual loop. It draws as the recorded ones do.
class ScriptedScreenTest : public StoreFixture {
 protected:
    ScriptedScreenTest() {
        store = std::make_shared<AppStore>(AppStore::Services{.loop = loop,
                                                              .pool = pool,
                                                              .preferences = preferences,
                                                              .stateFile = stateFile,
                                                              .home = folder.path(),
                                                              .launcher = &scripted,
                                                              .customAgent = [this](const Uuid&) { return spec; },
                                                              .notify = [this](SessionController&) { ++notified; }});
    }
    /// Its sessions go before their launcher.
    ~ScriptedScreenTest() override { store = makeStore(); }

    void start(SessionKind ofKind, std::optional<std::string> command = {}) {
        kind = ofKind;
        session =
            store->createSession({.kind = kind,
                                  .project = project(),
                                  .command = std::move(command),
                                  .customAgent = kind == SessionKind::custom ? std::optional(spec.id) : std::nullopt});
        screen = scripted.screen;
    }
    /// An agent that sits at its composer and has had something to do.
    void startIdle(SessionKind ofKind) {
        start(ofKind);
        composer();
        agent().watch().noteInteraction();
        session->setStatus({SessionStatus::Idle{}}, StatusSource::start);
        pass(2);
    }

    TerminalAgent& agent() { return *session->agent(); }
    PromptPipeline& prompts() { return agent().prompts(); }
    std::string status() const { return std::string(session->status().name()); }
    /// "idle by title": the status and what decided it.
    std::string decided() const { return status() + " by " + std::string(rawValue(session->evidence().source)); }
    std::string question() const {
        const auto& request = session->approval().pendingRequest;
        return request ? request->detail : "";
    }
    /// The states of the prompts that are not delivered, each by its first letter.
    std::string promptStates() {
        std::string states;
        for (const PromptPipeline::Prompt& each : prompts().prompts())
            states += rawValue(each.state).front();
        return states;
    }

    void pass(double seconds) {
        loop.advance(std::chrono::duration_cast<Duration>(std::chrono::duration<double>(seconds)));
    }
    void look() { pass(1.5); }

    void draw(const std::string& rows) {
        std::string bytes = "\x1b[2J\x1b[H";
        for (const char byte : rows)
            bytes += byte == '\n' ? "\r\n" : std::string(1, byte);
        screen->feed(bytes);
    }
    void title(const std::string& text) { screen->feed("\x1b]0;" + text + "\x07"); }
    void hooks(const std::string& words) const { std::ofstream(scripted.eventsPath, std::ios::app) << words; }

    static std::string line(const char* glyph = "─") {
        std::string row;
        for (int col = 0; col < ScriptedScreen::cols; ++col)
            row += glyph;
        return row + "\n";
    }

    /// The composer with a draft; a suggestion is drawn faint.
    void composer(const std::string& draft = "\x1b[2mTry \"fix the tests\"\x1b[22m") { drawTurn("", draft, ""); }
    /// A turn is running.
    void busy(const std::string& draft = "") {
        const char* spinner = kind == SessionKind::claude  ? "✽ Accomplishing… (14s · ↓ 21 tokens)"
                              : kind == SessionKind::codex ? "• Working (5s • esc to interrupt)"
                                                           : " ⠦ Thinking... (esc to cancel, 5s)";
        drawTurn(spinner, draft, " · esc to interrupt");
    }
    /// A dialog, in which Return would take the option `selected`.
    void ask(const std::string& text, const std::vector<std::string>& options = {"Yes", "No"}, int selected = 1) {
        std::string rows = "\n" + (kind == SessionKind::claude ? line() + " Bash command\n   ls\n" : "");
        rows += " " + text + "\n\n";
        for (int number = 1; const std::string& option : options) {
            const char* marker = kind == SessionKind::claude ? " ❯ " : kind == SessionKind::codex ? "› " : "● ";
            rows += (number == selected ? marker : "   ") + std::to_string(number) + ". " + option + "\n";
            ++number;
        }
        draw(rows + (kind == SessionKind::codex ? "\n  Press enter to confirm or esc to cancel"
                                                : "\n Enter to select · Esc to cancel"));
    }

    SessionKind kind = SessionKind::claude;
    AgentSpec spec{.id = Uuid::random(), .name = "own", .command = "own"};
    ScriptedLauncher scripted{loop, folder.path()};
    SessionController* session = nullptr;
    ScriptedScreen* screen = nullptr;
    int notified = 0;

 private:
    void drawTurn(const std::string& spinner, const std::string& draft, const std::string& hint) {
        std::string rows = "\n\n" + spinner + "\n\n";
        if (kind == SessionKind::claude) rows += line() + "❯ " + draft + "\n" + line() + "  ⏸ manual mode on" + hint;
        if (kind == SessionKind::codex) rows += "› " + draft + "\n\n  GPT-6-Sol default · ~/proj";
        if (kind == SessionKind::gemini) rows += line("▄") + " > " + draft + "\n" + line("▀") + " ~/proj   main";
        if (kind == SessionKind::custom) rows += "> " + draft;
        draw(rows);
    }
};

}  // namespace orvane::testing
