#include "Orvane/Agents/LoginCapture.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "Platform/ManualMainLoop.h"
#include "Support/TemporaryFolder.h"

namespace orvane {
namespace {

struct LoginCaptureTest : testing::Test {
    TemporaryFolder folder;
    ManualMainLoop loop;

    /// A shell that runs its last argument after what its user's profile does.
    std::string shellWith(const std::string& profile) {
        const std::string path =
            folder.write("shell", "#!/bin/sh\n" + profile + "\nfor last; do :; done\neval \"$last\"\n");
        std::filesystem::permissions(path, std::filesystem::perms::owner_all);
        return path;
    }
    ShellSetup setup(std::string shell) {
        return {.environment = {{"PATH", "/usr/bin:/bin"}, {"HOME", folder.path()}},
                .shell = std::move(shell),
                .locale = "C.UTF-8",
                .toolFolders = {"/opt/tools"}};
    }
};

TEST_F(LoginCaptureTest, takesTheVariablesBehindWhateverTheProfilePrints) {
    ShellSetup shell = setup(shellWith("echo Welcome; echo noise >&2; export EDITOR=vi PATH=/mine:$PATH"));
    const LoginCapture login(loop, shell);
    ASSERT_TRUE(loop.runUntil([&] { return login.entries().has_value(); }));
    EXPECT_EQ(EnvironmentList::value(*login.entries(), "EDITOR"), "vi");
    EXPECT_EQ(EnvironmentList::value(*login.entries(), "PATH"), "/mine:/usr/bin:/bin:/opt/tools");
    shell.toolFolders = {"/opt/newer"};
    EXPECT_EQ(EnvironmentList::value(*login.entries(), "PATH"), "/mine:/usr/bin:/bin:/opt/newer");
}

TEST_F(LoginCaptureTest, aShellThatFailsOrHangsGivesNoneAndHoldsNothingUp) {
    const ShellSetup failingShell = setup(shellWith("exit 1"));
    const LoginCapture failing(loop, failingShell);
    const ShellSetup missingShell = setup(folder.path("no-such-shell"));
    const LoginCapture missing(loop, missingShell);
    const std::string mark = folder.path("started");
    const ShellSetup hangingShell = setup(shellWith("echo > " + mark + "; exec sleep 600"));
    const LoginCapture hanging(loop, hangingShell);
    ASSERT_TRUE(loop.runUntil([&] { return std::filesystem::exists(mark); }));
    loop.advance(LoginShellRun::answerLimit);
    bool isOver = false;
    const auto soon = loop.after(std::chrono::seconds(1), [&] { isOver = true; });
    loop.advance(std::chrono::seconds(1));
    EXPECT_TRUE(isOver);
    EXPECT_FALSE(failing.entries() || missing.entries() || hanging.entries());
}

}  // namespace
}  // namespace orvane
