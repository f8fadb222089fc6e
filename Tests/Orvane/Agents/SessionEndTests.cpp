// How programs on terminals end, and that nothing of them stays.

#include <algorithm>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>

#include "Orvane/Agents/TerminalSession.h"
#include "Orvane/StoreFixture.h"
#include "Orvane/Workspace/StopSequence.h"
#include "Platform/LoopThread.h"
#include "Support/OpenDescriptors.h"

namespace orvane {
namespace {

using namespace std::chrono_literals;

/// Runs each session's command with /bin/sh on a terminal.
class ShOnTerminal final : public SessionLauncher {
 public:
    explicit ShOnTerminal(MainLoop& loop) : loop_(loop) {}

    std::expected<std::unique_ptr<SessionProcess>, LaunchFailure> launch(const SessionController& session,
                                                                         SessionProcessEvents events) override {
        auto process = std::make_unique<TerminalSession>(loop_, reader_.loop(), std::move(events));
        auto started = process->start({.executable = "/bin/sh", .args = {"-c", *session.identity().command}});
        if (!started) return std::unexpected(LaunchFailure{.error = started.error()});
        return process;
    }

 private:
    MainLoop& loop_;
    LoopThread reader_;
};

class SessionEndTest : public testing::StoreFixture {
 protected:
    struct End {
        SessionStatus status;
        std::string screen;
    };

    SessionEndTest() {
        store = std::make_shared<AppStore>(AppStore::Services{
            .loop = loop, .pool = pool, .preferences = preferences, .stateFile = stateFile, .launcher = &terminals});
        subscription = store->sessionEvents.subscribe([this](const SessionEvent& event) {
            const SessionController* ended = store->session(event.session);
            if (ended != nullptr && !ended->isActive())
                ends[event.session].push_back({ended->status(), screen(*ended)});
        });
    }
    /// The sessions stand on `terminals`.
    ~SessionEndTest() override {
        store->terminateAllSessions();
        store = makeStore();
    }

    static std::string screen(const SessionController& session) {
        return session.terminal()->terminal.getBufferAsData();
    }
    bool shows(const SessionController& session, const std::string& text) {
        return loop.runUntil([&] { return screen(session).contains(text); });
    }
    static char stateOf(pid_t process) {
        std::ifstream file("/proc/" + std::to_string(process) + "/stat");
        std::string text;
        std::getline(file, text);
        return text.empty() ? '-' : text.at(text.rfind(')') + 2);
    }
    /// The processes that we started, those included that were not waited for.
    static std::set<pid_t> children() {
        std::set<pid_t> found;
        for (const auto& thread : std::filesystem::directory_iterator("/proc/self/task")) {
            std::ifstream file(thread.path() / "children");
            found.insert(std::istream_iterator<pid_t>(file), {});
        }
        return found;
    }
    /// What tests before this one in the same process left is theirs.
    bool hasNoChild() const { return std::ranges::includes(childrenBefore, children()); }

    const std::set<pid_t> childrenBefore = children();
    ShOnTerminal terminals{loop};
    std::map<Uuid, std::vector<End>> ends;
    Registration subscription;
};

TEST_F(SessionEndTest, IsToldOnceBehindAllOutput) {
    const struct {
        std::string command;
        int waitStatus;
        std::string lastText;
    } cases[] = {
        {"printf well", 0, "well"},
        {"/no/such/program", 127 << 8, "not found"},
        {"printf shot; kill -KILL $$", SIGKILL, "shot"},
        {"seq 20000; printf last; exit 3", 3 << 8, "last"},
        {"printf early; exec <&- >&- 2>&-; sleep 0.1; exit 5", 5 << 8, "early"},
        {"(trap '' HUP; exec sleep 600) & printf 'held by a grandchild'", 0, "held by a grandchild"},
        {"trap '' TERM HUP; kill -TERM $$; printf stays", 0, "stays"},
    };
    const Uuid place = project();
    std::vector<pid_t> groups;
    std::vector<Uuid> ids;
    for (const auto& each : cases) {
        SessionController& made = session(place, each.command);
        groups.push_back(made.processId());
        ids.push_back(made.id());
    }
    EXPECT_TRUE(loop.runUntil([&] { return store->activeSessions().empty(); }));
    EXPECT_TRUE(loop.runUntil([&] { return hasNoChild(); })) << "a zombie stays";
    for (std::size_t index = 0; index < ids.size(); ++index) {
        const auto& each = cases[index];
        ASSERT_EQ(ends[ids[index]].size(), 1U) << each.command;
        const End& end = ends[ids[index]].front();
        EXPECT_EQ(end.status, (each.waitStatus == 0 ? SessionStatus{SessionStatus::Done{}}
                                                    : SessionStatus{SessionStatus::Failed{each.waitStatus}}))
            << each.command;
        EXPECT_TRUE(end.screen.contains(each.lastText)) << each.command << ": " << end.screen;
        kill(-groups[index], SIGKILL);  // the grandchild, which is in its group
    }
}

TEST_F(SessionEndTest, AProgramThatStopsItselfHasNotEnded) {
    SessionController& stopped = session(project(), "printf before; kill -STOP $$; printf ' and after'");
    const pid_t process = stopped.processId();
    ASSERT_TRUE(loop.runUntil([&] { return stateOf(process) == 'T'; }));
    ASSERT_TRUE(shows(stopped, "before"));
    EXPECT_FALSE(hasNoChild());
    EXPECT_TRUE(ends.empty());
    ASSERT_EQ(kill(process, SIGCONT), 0);
    ASSERT_TRUE(loop.runUntil([&] { return ends.size() == 1; }));
    EXPECT_TRUE(ends.at(stopped.id()).front().screen.contains("before and after"));
}

TEST_F(SessionEndTest, QuittingLeavesNoProgramBehind) {
    const Uuid place = project();
    for (const char* command : {
             "echo up; exec sleep 600",
             "trap '' TERM HUP; echo up; exec sleep 600",
             "trap '' TERM HUP; echo up; sleep 600 & exec sleep 600",
             "echo up; kill -STOP $$",
             "trap '' HUP; echo up; exec <&- >&- 2>&-; exec sleep 600",
         }) {
        ASSERT_TRUE(shows(session(place, command), "up"));
    }
    const auto stopping = store->stoppingSessions();
    std::vector<pid_t> programs;
    for (const auto& each : stopping)
        programs.push_back(each->processId());
    bool isStopped = false;
    StopSequence sequence(loop, store);
    sequence.start([&] { isStopped = true; });
    while (!isStopped)
        loop.advance(10ms);
    EXPECT_TRUE(loop.runUntil([&] { return hasNoChild(); })) << "a program or a zombie stays";
    for (const pid_t program : programs)
        EXPECT_EQ(stateOf(program), '-');
    EXPECT_TRUE(ends.empty());  // nobody asks any more
}

TEST_F(SessionEndTest, AThousandSessionsLeaveNothing) {
    constexpr int batches = 50;
    constexpr int batchSize = 20;
    const Uuid place = project();
    std::size_t before = 0;
    for (int batch = 0; batch <= batches; ++batch) {
        std::vector<Uuid> quick;
        for (int index = 0; index < batchSize; ++index) {
            const bool isQuick = index % 3 != 0;
            const SessionController& made = session(place, isQuick ? "true" : "exec sleep 600");
            if (isQuick) quick.push_back(made.id());
        }
        ASSERT_TRUE(loop.runUntil([&] { return ends.size() == quick.size(); }));
        for (const auto& each : std::vector(store->sessions()))
            store->closeSession(each->id());
        ASSERT_TRUE(loop.runUntil([&] { return hasNoChild(); }));
        loop.advance(2s);  // closed sessions are forgotten
        ASSERT_TRUE(store->stoppingSessions().empty());
        for (const Uuid& id : quick)
            EXPECT_EQ(ends.at(id).size(), 1U);
        ends.clear();
        if (batch == 0) before = openDescriptors();  // what is opened once is open now
    }
    EXPECT_TRUE(loop.runUntil([&] { return openDescriptors() <= before; })) << openDescriptors() << " of " << before;
}

}  // namespace
}  // namespace orvane
