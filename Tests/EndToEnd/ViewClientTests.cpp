// The client of the workspace view, on a real terminal, with a host that only plays one.

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/ioctl.h>
#include <sys/wait.h>

#include <csignal>
#include <filesystem>

#include "EndToEnd/HostTest.h"
#include "OrvaneCore/Support/JSONObject.h"
#include "Platform/LineServer.h"
#include "Platform/TerminalDevice.h"
#include "Platform/UnixSocket.h"
#include "TerminalEmulator/HeadlessTerminal.h"

namespace orvane {
namespace {

using namespace std::chrono_literals;
using ::testing::HasSubstr;
using ::testing::Not;

/// Takes the terminal of each view, switches all sorts of modes on and stops in the middle of a sequence.
class PlayedHost {
 public:
    PlayedHost(MainLoop& loop, const TemporaryFolder& folder)
        : server_(loop,
                  {.onRequest = [this](const auto& from, std::string_view line) { serve(from, line); },
                   .faultReply = [](LineServer::Fault) { return std::string("{}"); }},
                  {}) {
        std::filesystem::create_directories(folder.path("data/Orvane"));
        lock_ = *InstanceLock::acquire(folder.path("data/Orvane/host.lock"));
        const std::string path = folder.path("run/socket");
        server_.serve(std::move(*UnixSocket::listenAt(path)));
        EXPECT_TRUE(lock_ && lock_->publish({.processId = 0, .socketPath = path}));
    }

    void answer(std::string_view line) {
        EXPECT_TRUE(terminal && terminal->write("LATE"));
        terminal.reset();
        client->reply(line);
    }

    bool heard(std::string_view line) const { return std::ranges::count(input, line) > 0; }

    bool draws = true;         ///< and else answers at once, with a refusal
    bool leavesOnTime = true;  ///< when it is asked to
    std::string request;
    std::vector<std::string> input;
    std::optional<TerminalDevice> terminal;
    std::shared_ptr<LineServer::Connection> client;

 private:
    void serve(const std::shared_ptr<LineServer::Connection>& connection, std::string_view line) {
        client = connection;
        request = line;
        const auto descriptors = connection->takeDescriptors();
        EXPECT_EQ(descriptors.size(), 2U);
        if (!draws) return connection->reply(R"({"ok":false,"error":{"code":"refused","message":"No view today."}})");
        connection->beginStream();
        connection->onInput([this](std::string_view word) {
            input.emplace_back(word);
            if (word == R"({"detach":true})" && leavesOnTime) answer(R"({"ok":true,"result":{"reason":"detached"}})");
        });
        auto opened = TerminalDevice::open(descriptors[0]);
        ASSERT_TRUE(opened.has_value());
        // As where the terminal cannot be opened anew, and the two share its modes.
        for (const FileDescriptor& handed : descriptors)
            fcntl(handed.number(), F_SETFL, fcntl(handed.number(), F_GETFL) | O_NONBLOCK);
        terminal.emplace(*std::move(opened));
        connection->stream(R"({"attached":true})");
        EXPECT_TRUE(terminal->makeRaw());
        EXPECT_TRUE(
            terminal->write("\x1b[?1049h\x1b[?25l\x1b[?7l\x1b[?2004h\x1b[?1004h\x1b[?1002h\x1b[?1006h\x1b[>1u"
                            "\x1b[HFRAME\x1b[?2026h\x1b]2;half a ti"));
    }

    std::optional<InstanceLock> lock_;
    LineServer server_;
};

class ViewClientTest : public HostTest {
 protected:
    ViewClientTest() {
        environment["TERM"] = "xterm-256color";
        environment.erase("TMUX");
        screen.terminal.resize(70, 12);
    }

    /// Types the command into a shell that tells how it ended, and reads a line after it.
    void open(const std::string& command = R"(exec "$0" view)") {
        EntryList entries;
        for (const auto& [name, value] : environment)
            entries.push_back(std::string(name).append("=").append(value));
        const std::string script = "echo BEFORE; sh -c 'echo $$ >pid; " + command +
                                   "' \"$0\"; echo \"status $?\"; read line; echo \"got <$line>\"";
        ASSERT_TRUE(screen.process.startProcess({.executable = "/bin/sh",
                                                 .args = {"-c", script, ORVANE_EXECUTABLE},
                                                 .environment = entries,
                                                 .execName = {},
                                                 .currentDirectory = folder.path("project")}));
    }

    testing::AssertionResult shows(const std::string& text) {
        const auto shown = [&] { return screen.terminal.getBufferAsData(); };
        if (loop.runUntil([&] { return shown().contains(text); })) return testing::AssertionSuccess();
        return testing::AssertionFailure() << shown();
    }

    /// Whether the shell has its terminal as it was: the screen, the modes, echo and lines, blocking reads, and nothing
    /// to read that was typed into the view.
    void expectGivenBack(int status) {
        EXPECT_TRUE(shows("status " + std::to_string(status)));
        const bool blinks = screen.terminal.modes().cursorBlink;
        EXPECT_EQ(screen.terminal.modes(), TerminalModes{.cursorBlink = blinks});
        EXPECT_EQ(screen.terminal.keyboardMode(), KeyboardModeState{});
        EXPECT_FALSE(screen.terminal.isAlternateBufferActive());
        screen.process.send("hello\r");
        EXPECT_TRUE(shows("hello\ngot <hello>"));
        EXPECT_TRUE(loop.runUntil([&] { return ended; }));
        const std::string all = screen.terminal.getBufferAsData(Terminal::BufferKind::normal);
        EXPECT_THAT(all, HasSubstr("BEFORE\n"));
        EXPECT_THAT(all, Not(HasSubstr("LATE")));
    }

    pid_t viewProcess() const { return static_cast<pid_t>(std::stol(folder.read("project/pid"))); }

    using EntryList = std::vector<std::string>;
    bool ended = false;
    HeadlessTerminal screen{loop, loop, {}, [this](std::optional<int>) { ended = true; }};
};

TEST_F(ViewClientTest, GivesTheTerminalBackAfterEveryAnswer) {
    const struct {
        const char* answer;
        int status;
        const char* words;
    } cases[] = {
        {R"({"ok":true,"result":{"reason":"detached"}})", 0, "Detached. Agents go on"},
        {R"({"ok":true,"result":{"reason":"replaced"}})", 0, "The view was opened elsewhere."},
        {R"({"ok":true,"result":{"reason":"quit"}})", 0, "The host ended."},
        {R"({"ok":true})", 0, "BEFORE\nstatus 0"},
        {R"({"ok":false,"error":{"code":"refused","message":"It broke."}})", 1, "It broke."},
        {"no JSON", 1, "cannot be understood"},
    };
    PlayedHost host(loop, folder);
    for (const auto& each : cases) {
        SCOPED_TRACE(each.answer);
        ended = false;
        screen.terminal.resetToInitialState();
        open(R"(exec "$0" view .)");
        ASSERT_TRUE(shows("FRAME"));
        screen.process.send("\x1b[<64;1");
        ASSERT_TRUE(loop.runUntil([&] {
            int unread = 0;
            return ioctl(host.terminal->descriptor(), FIONREAD, &unread) == 0 && unread > 0;
        }));
        host.answer(each.answer);
        expectGivenBack(each.status);
        EXPECT_THAT(screen.terminal.getBufferAsData(), HasSubstr(each.words));
    }
    const auto json = Json::parse(host.request);
    const JSONObject arguments = JSONObject(*json).object("arguments");
    EXPECT_EQ(arguments.string("term"), "xterm-256color");
    EXPECT_EQ(arguments.string("project"), folder.path("project"));
    EXPECT_EQ(arguments.string("folder"), folder.path("project"));
    EXPECT_FALSE(arguments.boolean("insideTmux", true));

    ended = false;
    host.draws = false;
    screen.terminal.resetToInitialState();
    open();
    ASSERT_TRUE(shows("No view today."));
    expectGivenBack(1);
}

TEST_F(ViewClientTest, OutlivesAHostThatIsKilledInTheMiddleOfAFrame) {
    const pid_t host = fork();
    ASSERT_GE(host, 0);
    if (host == 0) {
        const PlayedHost played(loop, folder);
        (void)loop.runUntil([] { return false; }, 60s);
        _exit(1);
    }
    ASSERT_TRUE(hostRuns());
    open();
    EXPECT_TRUE(shows("FRAME"));
    ASSERT_EQ(kill(host, SIGKILL), 0);
    EXPECT_EQ(waitpid(host, nullptr, 0), host);
    EXPECT_TRUE(shows("The host ended."));
    expectGivenBack(1);
}

TEST_F(ViewClientTest, ASignalEndsItInOrderAndThenByThatSignal) {
    PlayedHost host(loop, folder);
    // A host that does not stop is not waited for for long.
    for (const auto& [signal, leavesOnTime] : {std::pair(SIGTERM, true), {SIGHUP, true}, {SIGINT, false}}) {
        SCOPED_TRACE(signal);
        host.leavesOnTime = leavesOnTime;
        ended = false;
        screen.terminal.resetToInitialState();
        open();
        ASSERT_TRUE(shows("FRAME"));
        kill(viewProcess(), signal);
        expectGivenBack(128 + signal);
        EXPECT_TRUE(host.heard(R"({"detach":true})"));
        host.input.clear();
    }
}

TEST_F(ViewClientTest, TellsTheHostOfANewSizeAndOfAStop) {
    PlayedHost host(loop, folder);
    open();
    ASSERT_TRUE(shows("FRAME"));
    EXPECT_EQ(host.terminal->size()->cols, 70);
    screen.terminal.resize(100, 30);
    EXPECT_TRUE(loop.runUntil([&] { return host.heard(R"({"resize":true})"); }));
    EXPECT_EQ(host.terminal->size()->cols, 100);

    kill(viewProcess(), SIGSTOP);
    ASSERT_TRUE(host.terminal->restore());  // as a shell does
    kill(viewProcess(), SIGCONT);
    EXPECT_TRUE(loop.runUntil([&] { return host.heard(R"({"redraw":true})"); }));
    termios settings{};
    ASSERT_EQ(tcgetattr(host.terminal->descriptor(), &settings), 0);
    EXPECT_EQ(settings.c_lflag & (ICANON | ECHO), 0U);
    host.answer(R"({"ok":true})");
    expectGivenBack(0);
}

TEST_F(ViewClientTest, IsNotOpenedWhereItCannotBeShown) {
    EXPECT_EQ(orvane({"view"})->status(), 1);
    EXPECT_THAT(orvane({"view"})->errors, HasSubstr("needs a terminal"));
    environment["TERM"] = "dumb";
    EXPECT_THAT(orvane({"view"})->errors, HasSubstr("“dumb”"));
    environment["ORVANE_SESSION"] = "7c1d2f64-90c6-4f0e-8a55-5d0b7f6a2c11";
    EXPECT_THAT(orvane({"view"})->errors, HasSubstr("inside itself"));
    EXPECT_EQ(seen().state, InstanceLock::State::free) << "no host was started for it";
}

}  // namespace
}  // namespace orvane
