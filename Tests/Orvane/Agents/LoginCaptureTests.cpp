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
    LoginCapture capture(const std::string& shell) {
        return {loop, shell, {{"PATH", "/usr/bin:/bin"}, {"HOME", "/home/ann"}}, {"/opt/tools"}};
    }
};

TEST_F(LoginCaptureTest, takesTheVariablesBehindWhateverTheProfilePrints) {
    const LoginCapture login = capture(shellWith("echo Welcome; echo noise >&2; export EDITOR=vi PATH=/mine:$PATH"));
    ASSERT_TRUE(loop.runUntil([&] { return login.entries().has_value(); }));
    EXPECT_EQ(EnvironmentList::value(*login.entries(), "EDITOR"), "vi");
    EXPECT_EQ(EnvironmentList::value(*login.entries(), "PATH"), "/mine:/usr/bin:/bin:/opt/tools");
}

TEST_F(LoginCaptureTest, aShellThatFailsOrHangsGivesNoneAndHoldsNothingUp) {
    const LoginCapture failing = capture(shellWith("exit 1"));
    const LoginCapture missing = capture(folder.path("no-such-shell"));
    const std::string mark = folder.path("started");
    const LoginCapture hanging = capture(shellWith("echo > " + mark + "; exec sleep 600"));
    ASSERT_TRUE(loop.runUntil([&] { return std::filesystem::exists(mark); }));
    loop.advance(LoginCapture::limit);
    bool isOver = false;
    const auto soon = loop.after(std::chrono::seconds(1), [&] { isOver = true; });
    loop.advance(std::chrono::seconds(1));
    EXPECT_TRUE(isOver);
    EXPECT_FALSE(failing.entries() || missing.entries() || hanging.entries());
}

}  // namespace
}  // namespace orvane
