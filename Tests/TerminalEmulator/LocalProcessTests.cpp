#include "TerminalEmulator/LocalProcess.h"

#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>

#include <filesystem>
#include <memory>

#include "Platform/LoopThread.h"
#include "Support/OpenDescriptors.h"
#include "Support/RunUntil.h"
#include "Support/TemporaryFolder.h"

namespace orvane {
namespace {

struct LocalProcessTest : testing::Test, LocalProcessDelegate {
    AsioMainLoop loop;
    LoopThread reader;
    std::string output;
    std::vector<std::optional<int>> ends;
    std::string outputAtEnd;
    WindowSize size{.rows = 24, .cols = 80, .xPixels = 16, .yPixels = 16};
    std::function<void()> whenEnded;
    std::unique_ptr<LocalProcess> process = std::make_unique<LocalProcess>(loop, reader.loop(), *this);

    void processTerminated(LocalProcess& /*source*/, std::optional<int> exitCode) override {
        ends.push_back(exitCode);
        outputAtEnd = output;
        if (whenEnded) whenEnded();
    }
    void dataReceived(std::string_view slice) override { output += slice; }
    WindowSize getWindowSize() override { return size; }

    void shell(const std::string& script) {
        ASSERT_TRUE(process->startProcess({.executable = "/bin/sh", .args = {"-c", script}}));
    }
    bool waitFor(const std::function<bool()>& condition) { return runUntil(loop, condition); }
    bool waitForText(const std::string& text) {
        return waitFor([&] { return output.contains(text); });
    }
    bool waitForEnd() {
        return waitFor([&] { return !ends.empty(); });
    }
};

TEST_F(LocalProcessTest, tellsEachEndOnceBehindAllOutput) {
    struct Case {
        std::string script;
        int waitStatus;
        std::string output;
    };
    const Case cases[] = {
        {"printf done", 0, "done"},
        {"printf bad; exit 1", 1 << 8, "bad"},
        {"printf no; exec /nonexistent/program 2>/dev/null", 127 << 8, "no"},
        {"printf die; kill -9 $$", SIGKILL, "die"},
        {"trap '' TERM; kill -TERM $$; printf stays", 0, "stays"},
        {"printf first; exec >&- 2>&- <&-; sleep 0.05", 0, "first"},
        {"(trap '' HUP; sleep 30) & printf behind", 0, "behind"},
        {"i=0; while [ $i -lt 3000 ]; do echo 0123456789; i=$((i+1)); done; printf last", 0, "last"},
    };
    for (const Case& each : cases) {
        output.clear();
        ends.clear();
        shell(each.script);
        ASSERT_TRUE(waitForEnd()) << each.script;
        EXPECT_EQ(ends, std::vector{std::optional(each.waitStatus)}) << each.script;
        EXPECT_TRUE(outputAtEnd.ends_with(each.output)) << each.script << ": " << outputAtEnd;
        EXPECT_FALSE(process->running());
        process->send("dropped");
    }
}

TEST_F(LocalProcessTest, startsWithWhatItIsGiven) {
    TemporaryFolder folder;
    ASSERT_TRUE(process->startProcess({.executable = "/bin/sh",
                                       .args = {"-c", "printf '%s|%s|' \"$0\" \"$ONE\"; pwd; stty size; tty; env"},
                                       .environment = std::vector<std::string>{"ONE=é '\"\n"},
                                       .execName = "name",
                                       .currentDirectory = folder.path()}));
    ASSERT_TRUE(waitForEnd());
    EXPECT_TRUE(output.starts_with("name|é '\"\r\n|" + folder.path() + "\r\n24 80\r\n/dev/pts/")) << output;
    EXPECT_FALSE(output.contains("HOME="));
}

TEST_F(LocalProcessTest, aPathThatCannotBeExecutedEndsWith127) {
    ASSERT_TRUE(process->startProcess({.executable = "/nonexistent"}));
    ASSERT_TRUE(waitForEnd());
    EXPECT_EQ(ends, std::vector{std::optional(127 << 8)});
    EXPECT_EQ(process->startProcess({.executable = std::string("/bin/sh\0x", 9)}).error().number, EINVAL);
    EXPECT_FALSE(process->running());
}

TEST_F(LocalProcessTest, passesBytesAndSizesOn) {
    shell("stty -echo; echo ready; read -r a; stty size; read -r b; printf '%s-%s' \"$a\" \"$b\"");
    ASSERT_TRUE(waitForText("ready"));
    const pid_t pid = process->shellPid();
    shell("echo a second start does nothing");
    EXPECT_EQ(process->shellPid(), pid);
    process->setWindowSize({.rows = 10, .cols = 20});
    process->send("one\n");
    ASSERT_TRUE(waitForText("10 20"));
    process->send("two\n");
    ASSERT_TRUE(waitForEnd());
    EXPECT_TRUE(outputAtEnd.ends_with("one-two")) << outputAtEnd;
}

TEST_F(LocalProcessTest, aTerminatedProgramIsReapedInSilence) {
    process->terminate();  // never started: nobody to signal
    shell("echo $$; exec sleep 60");
    ASSERT_TRUE(waitForText("\n"));
    const pid_t pid = process->shellPid();
    process->terminate();
    EXPECT_EQ(process->childfd(), -1);
    EXPECT_TRUE(waitFor([&] { return kill(pid, 0) != 0; })) << "a zombie stays";
    EXPECT_TRUE(ends.empty());
}

TEST_F(LocalProcessTest, mayBeDestroyedByItsDelegateAndWhileItFloods) {
    whenEnded = [this] { process.reset(); };
    shell("exit 3");
    ASSERT_TRUE(waitForEnd());
    EXPECT_EQ(process, nullptr);
    whenEnded = {};
    process = std::make_unique<LocalProcess>(loop, reader.loop(), *this);
    shell("exec yes");
    ASSERT_TRUE(waitFor([&] { return output.size() > 100'000; }));
    const pid_t pid = process->shellPid();
    process.reset();
    EXPECT_TRUE(waitFor([&] { return kill(pid, 0) != 0; })) << "its terminal went away";
}

TEST_F(LocalProcessTest, leaksNoDescriptor) {
    shell("true");
    ASSERT_TRUE(waitForEnd());
    const std::size_t before = openDescriptors();
    for (int round = 0; round < 200; ++round) {
        ends.clear();
        shell(round % 2 == 0 ? "true" : "exec sleep 60");
        if (round % 2 == 0) {
            ASSERT_TRUE(waitForEnd());
        } else {
            process->terminate();
        }
    }
    EXPECT_TRUE(waitFor([&] { return openDescriptors() <= before; })) << openDescriptors() << " of " << before;
}

TEST_F(LocalProcessTest, tellsOfReadsAndWritesWhenAsked) {
    const auto run = [&](bool debugIO) {
        testing::internal::CaptureStdout();
        process->debugIO = debugIO;
        ends.clear();
        shell("stty -echo; read -r line; printf 12345");
        process->send("hi\x1b\n");
        EXPECT_TRUE(waitForEnd());
        return testing::internal::GetCapturedStdout();
    };
    EXPECT_EQ(run(false), "");
    EXPECT_EQ(process->total(), 4);
    EXPECT_EQ(process->totalRead(), 0);
    const std::string lines = run(true);
    EXPECT_TRUE(lines.starts_with("[SEND-2] Queuing data to client: hi\\x1b\\x0a\n[SEND-2] completed bytes=8\n"))
        << lines;
    EXPECT_TRUE(lines.contains(" received from host total=" + std::to_string(process->totalRead()) + "\n")) << lines;
    EXPECT_EQ(process->sendCount(), 2);
    EXPECT_GE(process->totalRead(), 5);
}

TEST_F(LocalProcessTest, tellsOfInputThatItCannotHold) {
    shell("stty raw -echo; echo ready; exec sleep 60");
    ASSERT_TRUE(waitForText("ready"));
    testing::internal::CaptureStderr();
    process->send(std::string(LocalProcess::sendLimit + 1, 'x'));
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "Error writing data to the child, errno=105\n");
    EXPECT_EQ(process->total(), 0);
    process->send(std::string(100'000, 'x'));  // more than the terminal holds
    process->terminate();
}

TEST_F(LocalProcessTest, keepsWhatWasReadInAFolder) {
    TemporaryFolder folder;
    process->setHostLogging(folder.path());
    shell("printf logged");
    ASSERT_TRUE(waitForEnd());
    EXPECT_EQ(std::filesystem::file_size(folder.path() + "/log-0"), 6);
}

}  // namespace
}  // namespace orvane
