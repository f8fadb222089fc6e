#include "Platform/ChildProcess.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include "Platform/FileDescriptor.h"
#include "Platform/ProgramLookup.h"
#include "Support/RunUntil.h"
#include "Support/TemporaryFolder.h"

namespace orvane {
namespace {

using testing::HasSubstr;
using Exited = ExitStatus::Exited;
using Signalled = ExitStatus::Signalled;
using Options = ChildProcess::Options;

struct ChildProcessTest : testing::Test {
    ManualMainLoop loop;
    std::string output;
    std::string errors;
    std::optional<ExitStatus> status;
    std::size_t bytesAtExit = 0;
    std::function<void()> whenTold;
    std::unique_ptr<ChildProcess> child;

    ChildProcess::Callbacks callbacks() {
        return {.onOutput = [this](std::string_view bytes) { output += bytes; },
                .onError = [this](std::string_view bytes) { errors += bytes; },
                .onExit =
                    [this](ExitStatus told) {
                        EXPECT_FALSE(status) << "told twice";
                        status = told;
                        bytesAtExit = output.size() + errors.size();
                        if (whenTold) whenTold();
                    }};
    }

    void start(Options options) {
        status.reset();
        output.clear();
        auto started = ChildProcess::start(loop, std::move(options), callbacks());
        ASSERT_TRUE(started) << started.error().message();
        child = *std::move(started);
    }

    void shell(const std::string& script, Options options = {}) {
        options.arguments = {"/bin/sh", "-c", script};
        start(std::move(options));
    }

    ExitStatus finish() {
        EXPECT_TRUE(loop.runUntil([this] { return status.has_value(); }));
        return status.value_or(ExitStatus{Signalled{-1}});
    }
};

TEST_F(ChildProcessTest, DeliversBothStreamsAndThenTheExit) {
    shell("head -c 3000000 /dev/zero; echo problem >&2; exit 3");
    EXPECT_EQ(finish(), (ExitStatus{Exited{3}}));
    EXPECT_EQ(output.size(), 3'000'000U);
    EXPECT_EQ(errors, "problem\n");
    EXPECT_EQ(bytesAtExit, 3'000'008U);
    EXPECT_FALSE(child->isRunning());
    EXPECT_EQ(child->signal(SIGTERM).error().number, ESRCH);
    EXPECT_EQ(waitpid(child->pid(), nullptr, WNOHANG), -1);  // reaped
}

TEST_F(ChildProcessTest, DeliversWhatIsQueuedWhenTheEndIsSeenFirstAndMergesErrorsInOrder) {
    shell("head -c 60000 /dev/zero; printf problem >&2");
    siginfo_t info{};
    ASSERT_EQ(waitid(P_PID, static_cast<id_t>(child->pid()), &info, WEXITED | WNOWAIT), 0);
    finish();
    EXPECT_EQ(bytesAtExit, 60'007U);

    shell("echo a; echo b >&2; echo c", {.errorOutput = ChildProcess::ErrorOutput::intoOutput});
    finish();
    EXPECT_EQ(output, "a\nb\nc\n");
}

TEST_F(ChildProcessTest, BoundsTheInputAndSurvivesAClosedOne) {
    shell("exec 0<&-; echo closed; exec sleep 1000", {.input = ChildProcess::Input::pipe});
    ASSERT_TRUE(loop.runUntil([&] { return output == "closed\n"; }));
    EXPECT_EQ(child->write("x").error().number, EPIPE);
    ASSERT_TRUE(child->signal(SIGTERM));
    EXPECT_EQ(finish(), (ExitStatus{Signalled{SIGTERM}}));
    EXPECT_EQ(status->shellCode(), 143);

    shell("exec sleep 1000", {.input = ChildProcess::Input::pipe});
    ASSERT_TRUE(child->write(std::string(ChildProcess::inputLimit, 'x')));
    EXPECT_EQ(child->write(std::string(1024 * 1024, 'y')).error().number, ENOBUFS);
    ASSERT_TRUE(child->signal(SIGKILL));
    finish();

    start({.arguments = {"cat"}});
    EXPECT_EQ(child->write("x").error().number, EPIPE);
    EXPECT_EQ(finish(), (ExitStatus{Exited{0}}));  // the null device ends at once
}

TEST_F(ChildProcessTest, SaysWhyItCannotStart) {
    const TemporaryFolder folder;
    const std::string plain = folder.write("plain", "text");
    const std::string none = ": No such file or directory";
    const std::pair<Options, std::string> cases[] = {
        {{.arguments = {"/none/tool"}}, "start /none/tool" + none},
        {{.arguments = {plain}}, "start " + plain + ": Permission denied"},
        {{.arguments = {folder.path()}}, "start " + folder.path() + ": Permission denied"},
        {{.arguments = {"orvane-no-such-tool"}}, "start orvane-no-such-tool" + none},
        {{.arguments = {"plain"}, .environment = {{{"PATH", folder.path()}}}}, "start plain: Permission denied"},
        {{.arguments = {"/bin/true"}, .workingDirectory = "/none"}, "enter folder /none" + none},
        {{.arguments = {"/bin/true"}, .workingDirectory = plain}, "enter folder " + plain + ": Not a directory"},
        {{}, "Invalid argument"},
        {{.arguments = {"/bin/true", std::string("a\0b", 3)}}, "zero byte"},
        {{.arguments = {"/bin/true"}, .environment = {{{"A=B", ""}}}}, "\"A=B\""},
        {{.arguments = {"/bin/true", std::string(3'000'000, 'x')}}, "Argument list too long"}};
    for (const auto& [options, message] : cases) {
        const auto started = ChildProcess::start(loop, options, {});
        ASSERT_FALSE(started) << message;
        EXPECT_THAT(started.error().message(), HasSubstr(message));
    }
}

TEST_F(ChildProcessTest, GivesTheChildExactlyItsEnvironmentAndFolder) {
    const TemporaryFolder folder;
    std::filesystem::create_directory(folder.path("bin"));
    folder.write("bin/show", "#!/bin/sh\nexec /usr/bin/env\n");
    std::filesystem::permissions(folder.path("bin/show"), std::filesystem::perms(0700));
    // The program is found through the child's PATH, whose relative entry starts from the child's folder.
    start({.arguments = {"show"},
           .environment = {{{"A", "1 2"}, {"PATH", "/none:bin"}}},
           .workingDirectory = folder.path()});
    EXPECT_EQ(finish(), (ExitStatus{Exited{0}}));
    EXPECT_THAT(output, HasSubstr("A=1 2\n"));
    EXPECT_THAT(output, HasSubstr("PATH=/none:bin\n"));
    EXPECT_THAT(output, HasSubstr("PWD=" + std::filesystem::canonical(folder.path()).string() + "\n"));  // the shell's
    EXPECT_EQ(std::ranges::count(output, '\n'), 3);
    EXPECT_EQ(findProgram("sh", ":/none:/bin"), "/bin/sh");
}

TEST_F(ChildProcessTest, GivesTheChildNothingElseOfOurs) {
    const FileDescriptor leak(open("/dev/null", O_RDONLY));  // NOLINT: not close-on-exec, that is the point
    sigset_t blocked;
    sigset_t before;
    sigemptyset(&blocked);
    sigaddset(&blocked, SIGTERM);
    sigprocmask(SIG_BLOCK, &blocked, &before);
    const auto pipeHandler = signal(SIGPIPE, SIG_IGN);
    // What ls itself opens to read the folder is number 3.
    shell("grep -E '^Sig(Blk|Ign):' /proc/self/status; exec ls /proc/self/fd");
    finish();
    sigprocmask(SIG_SETMASK, &before, nullptr);
    signal(SIGPIPE, pipeHandler);
    EXPECT_EQ(output, "SigBlk:\t0000000000000000\nSigIgn:\t0000000000000000\n0\n1\n2\n3\n");
}

TEST_F(ChildProcessTest, CopesWithIgnoredChildrenAndClosedStandardDescriptors) {
    const auto childHandler = signal(SIGCHLD, SIG_IGN);
    const FileDescriptor input(fcntl(STDIN_FILENO, F_DUPFD_CLOEXEC, 10));
    close(STDIN_FILENO);
    shell("cat; echo problem >&2; exit 3", {.input = ChildProcess::Input::pipe});
    dup2(input.number(), STDIN_FILENO);
    ASSERT_TRUE(child->write("echo"));
    child->closeInput();
    EXPECT_EQ(finish(), (ExitStatus{Exited{3}}));
    EXPECT_EQ(output + errors, "echoproblem\n");
    signal(SIGCHLD, childHandler);
}

TEST_F(ChildProcessTest, AGrandchildThatHoldsThePipesDelaysNothing) {
    whenTold = [&] { EXPECT_TRUE(child->signalGroup(SIGKILL)) << "the group outlives its leader"; };
    for (const auto* grandchild : {"sleep 1000 &", "yes & yes >&2 &"}) {
        shell(std::string("echo hi; ") + grandchild + " exit 7", {.group = ChildProcess::Group::own});
        EXPECT_EQ(child->processGroup(), child->pid());
        EXPECT_EQ(finish(), (ExitStatus{Exited{7}})) << grandchild;
        EXPECT_TRUE(output.starts_with("hi\n"));
        EXPECT_EQ(child->signalGroup(SIGKILL).error().number, ESRCH);
    }
}

TEST_F(ChildProcessTest, MakesGroupsAndSessionsAndSignalsThemWhole) {
    start({.arguments = {"cat"}, .input = ChildProcess::Input::pipe});
    EXPECT_EQ(getpgid(child->pid()), getpgrp());
    EXPECT_EQ(child->signalGroup(SIGKILL).error().number, EINVAL);  // that would be ourselves
    child->closeInput();
    finish();
    shell("sleep 1000 | sleep 1000", {.group = ChildProcess::Group::ownSession});
    EXPECT_EQ(getsid(child->pid()), child->pid());
    ASSERT_TRUE(child->signalGroup(SIGINT));
    EXPECT_EQ(finish().shellCode(), 130);
}

TEST_F(ChildProcessTest, MayBeDestroyedAtAnyTimeAndLeavesNoZombie) {
    start({.arguments = {"cat"}, .input = ChildProcess::Input::pipe});
    const pid_t ends = child->pid();
    child.reset();  // closes its input, at which cat ends
    start({.arguments = {"sleep", "1000"}});
    const pid_t stays = child->pid();
    child.reset();
    EXPECT_EQ(kill(stays, 0), 0);  // not signalled
    kill(stays, SIGKILL);
    EXPECT_TRUE(loop.runUntil([&] { return kill(ends, 0) != 0 && kill(stays, 0) != 0; }));
    EXPECT_FALSE(status);

    // Inside its own callbacks: nothing more is told after that.
    for (const bool isInExit : {false, true}) {
        std::string calls;
        const auto called = [&](char which) {
            calls += which;
            if (isInExit == (which == 'e')) child.reset();
        };
        child = ChildProcess::start(
                    loop, {.arguments = {"/bin/echo", "x"}},
                    {.onOutput = [&](std::string_view) { called('o'); }, .onExit = [&](ExitStatus) { called('e'); }})
                    .value();
        const pid_t pid = child->pid();
        ASSERT_TRUE(loop.runUntil([&] { return !child && kill(pid, 0) != 0; })) << isInExit;
        EXPECT_EQ(calls, isInExit ? "oe" : "o");
    }
}

TEST(ChildProcess, EchoesALargeInputAndIsReapedOnTheRealLoop) {
    AsioMainLoop loop;
    std::string sent;
    std::string output;
    std::optional<ExitStatus> status;
    for (int index = 0; index < 500'000; ++index)
        sent += std::to_string(index);
    const Options cat{.arguments = {"cat"}, .input = ChildProcess::Input::pipe};
    auto child = ChildProcess::start(loop, cat,
                                     {.onOutput = [&](std::string_view bytes) { output += bytes; },
                                      .onExit = [&](ExitStatus told) { status = told; }})
                     .value();
    ASSERT_TRUE(child->write(sent.substr(0, 1'000'000)));
    ASSERT_TRUE(child->write(sent.substr(1'000'000)));
    child->closeInput();
    EXPECT_EQ(child->write("late").error().number, EPIPE);
    EXPECT_TRUE(runUntil(loop, [&] { return status == ExitStatus{Exited{0}}; }));
    EXPECT_TRUE(output == sent);

    child = ChildProcess::start(loop, cat, {}).value();
    const pid_t pid = child->pid();
    child.reset();
    EXPECT_TRUE(runUntil(loop, [&] { return kill(pid, 0) != 0; })) << "a zombie stays";
}

}  // namespace
}  // namespace orvane
