// The runner of git, with the real one.

#include "Orvane/Git/Git.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>

#include "Platform/Files.h"
#include "Support/TemporaryFolder.h"

namespace orvane {
namespace {

using namespace std::chrono_literals;

class GitTest : public ::testing::Test {
 protected:
    Git gitWith(const std::string& path, std::vector<std::string> more = {}) {
        more.insert(more.end(), {"PATH=" + path, "HOME=" + folder.path(), "GIT_CONFIG_NOSYSTEM=1"});
        return Git(std::move(more));
    }

    TemporaryFolder folder;
    Git git = gitWith("/usr/bin:/bin");
};

TEST_F(GitTest, TellsTheBranchOfAFolder) {
    const std::string repository = folder.path("a 'repository'\n");
    std::filesystem::create_directories(repository + "/inside");
    EXPECT_EQ(git.currentBranch(repository), std::nullopt) << "no repository yet";
    ASSERT_TRUE(git.run({"init", "-q", "-b", "größer/eins"}, repository).isSuccess());
    EXPECT_EQ(git.currentBranch(repository), std::nullopt) << "no commit yet";
    const auto commit =
        git.run({"-c", "user.name=A", "-c", "user.email=a@b", "commit", "--allow-empty", "-m", "One"}, repository);
    ASSERT_TRUE(commit.isSuccess()) << commit.error;
    EXPECT_EQ(git.currentBranch(repository + "/inside"), "größer/eins");
    // Whoever starts the host from a hook has these set.
    EXPECT_EQ(gitWith("/usr/bin:/bin", {"GIT_DIR=/nowhere", "GIT_WORK_TREE=/"}).currentBranch(repository),
              "größer/eins");
    ASSERT_TRUE(git.run({"checkout", "-q", "--detach"}, repository).isSuccess());
    EXPECT_EQ(git.currentBranch(repository), "HEAD");
    EXPECT_EQ(git.currentBranch(folder.path("gone")), std::nullopt);
}

TEST_F(GitTest, ACommandNeitherWaitsNorGoesOnForEver) {
    std::filesystem::create_directory(folder.path("bin"));
    folder.write("bin/git", R"(#!/bin/sh
case $1 in
    print) printf '%s' "$GIT_TERMINAL_PROMPT $GIT_OPTIONAL_LOCKS $GIT_EDITOR"; cat; exit 3 ;;
    wait) trap '' TERM; sleep 1000 & echo $! > "$HOME/child"; echo begun; wait ;;
    flood) yes ;;
esac
)");
    std::filesystem::permissions(folder.path("bin/git"), std::filesystem::perms::owner_all);
    const Git slow = gitWith(folder.path("bin") + ":/usr/bin:/bin");

    const auto printed = slow.run({"print"}, folder.path());
    EXPECT_EQ(printed.status, 3);
    EXPECT_EQ(printed.text, "0 0 true");

    const auto waited = slow.run({"wait"}, folder.path(), 500ms);
    EXPECT_FALSE(waited.isSuccess());
    EXPECT_EQ(waited.text, "begun\n");
    const pid_t child = std::stoi(readWholeFile(folder.path("child"), 100).value_or("0"));
    ASSERT_GT(child, 0);
    const auto isGone = [&] {
        const auto stat = readWholeFile("/proc/" + std::to_string(child) + "/stat", 1000);
        return !stat || stat->contains(") Z ");
    };
    for (int i = 0; i < 1000 && !isGone(); ++i)
        usleep(10'000);
    EXPECT_TRUE(isGone());

    EXPECT_FALSE(slow.run({"flood"}, folder.path()).isSuccess());
    EXPECT_EQ(gitWith(folder.path("none")).run({"status"}, folder.path()).status, 127);
}

}  // namespace
}  // namespace orvane
