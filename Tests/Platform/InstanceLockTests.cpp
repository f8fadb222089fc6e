#include "Platform/InstanceLock.h"

#include <gmock/gmock.h>
#include <sys/wait.h>
#include <unistd.h>

#include "Platform/Folders.h"
#include "Support/TemporaryFolder.h"

namespace orvane {
namespace {

namespace fs = std::filesystem;

TEST(InstanceLockTest, OneHolderWhomOthersCanFindUntilItDies) {
    using State = InstanceLock::State;
    const TemporaryFolder folder;
    const std::string path = folder.path("host.lock");
    EXPECT_EQ(InstanceLock::observe(path).state, State::free);

    int wake[2];
    int ready[2];
    ASSERT_EQ(pipe(wake), 0);
    ASSERT_EQ(pipe(ready), 0);
    const pid_t holder = fork();
    if (holder == 0) {
        const auto lock = InstanceLock::acquire(path);
        char byte = lock && lock->has_value() ? 'y' : 'n';
        (void)!write(ready[1], &byte, 1);
        (void)!read(wake[0], &byte, 1);
        (void)(*lock)->publish({.processId = getpid(), .socketPath = "/tmp/a \"quoted\" place"});
        (void)!write(ready[1], &byte, 1);
        pause();
        _exit(0);
    }
    char byte = 0;
    ASSERT_EQ(read(ready[0], &byte, 1), 1);
    ASSERT_EQ(byte, 'y');
    EXPECT_EQ(InstanceLock::observe(path).state, State::starting);
    auto second = InstanceLock::acquire(path);
    ASSERT_TRUE(second.has_value());
    EXPECT_FALSE(second->has_value());

    ASSERT_EQ(write(wake[1], "g", 1), 1);
    ASSERT_EQ(read(ready[0], &byte, 1), 1);
    const auto seen = InstanceLock::observe(path);
    EXPECT_EQ(seen.state, State::running);
    EXPECT_EQ(seen.record, (InstanceRecord{holder, "/tmp/a \"quoted\" place"}));

    kill(holder, SIGKILL);
    waitpid(holder, nullptr, 0);
    EXPECT_EQ(InstanceLock::observe(path).state, State::free);
    auto third = InstanceLock::acquire(path);
    ASSERT_TRUE(third.has_value() && third->has_value());
    // The record of the killed host is gone with the taking of the lock.
    EXPECT_EQ(fs::file_size(path), 0U);
    for (const int end : {wake[0], wake[1], ready[0], ready[1]})
        close(end);

    EXPECT_FALSE(InstanceLock::acquire(folder.path("missing/host.lock")).has_value());
    fs::create_symlink(folder.path("elsewhere"), folder.path("link"));
    EXPECT_FALSE(InstanceLock::acquire(folder.path("link")).has_value());
    EXPECT_FALSE(fs::exists(folder.path("elsewhere")));
}

TEST(InstanceLockTest, FoldersFollowTheEnvironmentAndPrivateOnesAreChecked) {
    EXPECT_EQ(Folders::applicationSupport({{"HOME", "/home/ann/"}}), "/home/ann/.local/share/Orvane");
    EXPECT_EQ(Folders::applicationSupport({{"HOME", "/home/ann"}, {"XDG_DATA_HOME", "relative"}}),
              "/home/ann/.local/share/Orvane");
    EXPECT_EQ(Folders::preferencesFile({{"HOME", "/h"}, {"XDG_CONFIG_HOME", "/c/"}}), "/c/Orvane/preferences.json");

    const TemporaryFolder folder;
    const std::string base = folder.path();
    Environment environment{{"XDG_RUNTIME_DIR", base + "/gone"}, {"TMPDIR", base}};
    const std::string fallback = base + "/orvane-" + std::to_string(geteuid());
    EXPECT_EQ(Folders::runtime(environment), fallback);
    environment["XDG_RUNTIME_DIR"] = base;
    EXPECT_EQ(Folders::runtime(environment), base + "/orvane");
    EXPECT_EQ(fs::status(base + "/orvane").permissions(), fs::perms::owner_all);
    // Another user's, as su leaves it to root.
    if (geteuid() == 0) {
        ASSERT_EQ(chown(base.c_str(), 1, 1), 0);
        EXPECT_EQ(Folders::runtime(environment), fallback);
        ASSERT_EQ(chown(base.c_str(), 0, 0), 0);
    }
    EXPECT_THAT(*Folders::temporary({{"TMPDIR", base + "/gone"}}), ::testing::StartsWith("/tmp/orvane-"));

    fs::permissions(fallback, fs::perms::all);
    ASSERT_TRUE(Folders::temporary(environment).has_value());
    EXPECT_EQ(fs::status(fallback).permissions(), fs::perms::owner_all);

    // A link that somebody put in the way is not followed.
    fs::remove(fallback);
    fs::create_directory(base + "/theirs");
    fs::create_symlink(base + "/theirs", fallback);
    EXPECT_FALSE(Folders::temporary(environment).has_value());
    fs::remove(fallback);
    folder.write(fs::path(fallback).filename(), "a file");
    EXPECT_FALSE(Folders::temporary(environment).has_value());
}

}  // namespace
}  // namespace orvane
