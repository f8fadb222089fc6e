#include "Platform/Files.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <signal.h>
#include <sys/file.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <random>
#include <thread>

#include "Support/TemporaryFolder.h"

namespace orvane {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

/// Runs the body in a process of its own, which ends with what the body returns.
template <typename Body>
pid_t inChild(Body body) {
    const pid_t pid = fork();
    if (pid == 0) _exit(body());
    return pid;
}

int exitCode(pid_t pid) {
    int status = 0;
    EXPECT_EQ(waitpid(pid, &status, 0), pid);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

TEST(Files, ReadsRegularFilesUpToTheLimitAndNothingElse) {
    const TemporaryFolder folder;
    const std::string path = folder.write("file", std::string(100'000, 'x'));
    EXPECT_EQ(readWholeFile(path, 100'000), std::string(100'000, 'x'));
    EXPECT_EQ(readWholeFile(path, 99'999).error().number, EFBIG);
    EXPECT_EQ(readWholeFile(folder.path("none"), 10).error().number, ENOENT);
    EXPECT_EQ(readWholeFile(folder.path(), 10).error().number, EISDIR);
    EXPECT_EQ(readWholeFile(path + std::string("\0z", 2), 10).error().number, EINVAL);
    // Its size is told as 0.
    EXPECT_THAT(readWholeFile("/proc/self/status", 100'000).value(), HasSubstr("SigBlk"));
    EXPECT_EQ(readWholeFile("/proc/self/status", 20).error().number, EFBIG);
    // A pipe nobody writes to must not hold us up.
    ASSERT_EQ(mkfifo(folder.path("fifo").c_str(), 0600), 0);
    EXPECT_FALSE(readWholeFile(folder.path("fifo"), 10));
}

TEST(Files, ReplacesAFileWithTheGivenModeAndThroughLinks) {
    const TemporaryFolder folder;
    ASSERT_TRUE(writeWholeFile(folder.path("new"), "one"));
    ASSERT_TRUE(writeWholeFile(folder.path("new"), "two", 0640));
    struct stat status{};
    ASSERT_EQ(stat(folder.path("new").c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777, 0640U);
    EXPECT_EQ(folder.read("new"), "two");

    std::filesystem::create_directory(folder.path("elsewhere"));
    std::filesystem::create_symlink("elsewhere/target", folder.path("inner"));
    std::filesystem::create_symlink(folder.path("inner"), folder.path("outer"));
    ASSERT_TRUE(writeWholeFile(folder.path("outer"), "three"));
    EXPECT_EQ(folder.read("elsewhere/target"), "three");
    EXPECT_TRUE(std::filesystem::is_symlink(folder.path("outer")));
    EXPECT_THAT(folder.names(), ElementsAre("elsewhere", "inner", "new", "outer"));

    EXPECT_TRUE(writeWholeFile(folder.path(std::string(255, 'n')), "fits"));
}

TEST(Files, RefusesWhatIsNoRegularFileAndNamesTheStep) {
    const TemporaryFolder folder;
    folder.write("file", "x");
    std::filesystem::create_symlink("loop", folder.path("loop"));
    ASSERT_EQ(mkfifo(folder.path("fifo").c_str(), 0600), 0);
    const auto message = [&](const std::string& name) {
        return writeWholeFile(folder.path(name), "y").error().message();
    };
    EXPECT_EQ(message("file/below"), "resolve " + folder.path("file/below") + ": Not a directory");
    EXPECT_EQ(message("none/below"), "open the folder of " + folder.path("none/below") + ": No such file or directory");
    EXPECT_THAT(message("loop"), HasSubstr("Too many levels of symbolic links"));
    EXPECT_THAT(message("fifo"), HasSubstr("not a regular file"));
    EXPECT_TRUE(std::filesystem::is_fifo(folder.path("fifo")));
}

TEST(Files, KeepsTheOldFileWhenTheDiskTakesOnlyAPart) {
    const TemporaryFolder folder;
    const std::string path = folder.write("file", "old");
    const pid_t child = inChild([&] {
        signal(SIGXFSZ, SIG_IGN);
        const rlimit limit{1000, 1000};
        setrlimit(RLIMIT_FSIZE, &limit);
        const auto written = writeWholeFile(path, std::string(5000, 'n'));
        return !written && written.error() == SystemError::of(EFBIG, "write", path) ? 0 : 1;
    });
    EXPECT_EQ(exitCode(child), 0);
    EXPECT_EQ(folder.read("file"), "old");
    EXPECT_THAT(folder.names(), ElementsAre("file"));
}

TEST(Files, AWriterKilledAtAnyMomentLeavesOneWholeContent) {
    const TemporaryFolder folder;
    const std::string path = folder.path("file");
    const std::array contents{std::string(300'000, 'a'), std::string(100'000, 'b')};
    ASSERT_TRUE(writeWholeFile(path, contents[0]));
    std::mt19937 random(7);  // NOLINT(cert-msc51-cpp): the same rounds each time
    for (int round = 0; round < 40; ++round) {
        std::array<int, 2> progress{};
        ASSERT_EQ(pipe(progress.data()), 0);
        const pid_t child = inChild([&] {
            for (std::size_t turn = 0;; ++turn) {
                if (!writeWholeFile(path, contents[turn % 2]) || write(progress[1], "x", 1) != 1) return 1;
            }
        });
        char byte = 0;
        for (auto writes = random() % 3; writes > 0; --writes)
            ASSERT_EQ(read(progress[0], &byte, 1), 1);
        // Looking at the folder for a while moves the end to another place within the write.
        for (auto looks = random() % 60; looks > 0; --looks)
            folder.names();
        kill(child, SIGKILL);
        EXPECT_EQ(exitCode(child), -1);
        close(progress[0]);
        close(progress[1]);
        const std::string content = folder.read("file");
        ASSERT_TRUE(content == contents[0] || content == contents[1]) << content.size() << " bytes";
    }
    ASSERT_TRUE(writeWholeFile(path, "end"));
    EXPECT_THAT(folder.names(), ElementsAre("file"));
}

TEST(Files, RemovesTemporariesOfDeadWritersOnly) {
    const TemporaryFolder folder;
    folder.write(".file.orvane-tmp-dead", "left");
    folder.write(".other.orvane-tmp-dead", "not of this file");
    const std::string alive = folder.write(".file.orvane-tmp-alive", "half");
    const int descriptor = open(alive.c_str(), O_RDWR | O_CLOEXEC);
    ASSERT_EQ(flock(descriptor, LOCK_EX), 0);
    ASSERT_TRUE(writeWholeFile(folder.path("file"), "x"));
    EXPECT_THAT(folder.names(), ElementsAre(".file.orvane-tmp-alive", ".other.orvane-tmp-dead", "file"));
    close(descriptor);
}

TEST(Files, WritersOfOneFileDoNotDisturbEachOther) {
    const TemporaryFolder folder;
    const auto writeOften = [&](char name) {
        for (int turn = 0; turn < 100; ++turn) {
            const auto written = writeWholeFile(folder.path("file"), std::string(5000, name));
            EXPECT_TRUE(written) << written.error().message();
        }
    };
    {
        const std::jthread first(writeOften, 'a');
        const std::jthread second(writeOften, 'b');
    }
    const std::string content = folder.read("file");
    EXPECT_TRUE(content == std::string(5000, 'a') || content == std::string(5000, 'b'));
    EXPECT_THAT(folder.names(), ElementsAre("file"));
}

TEST(Files, MakesFoldersPrivateAndLeavesOthersAlone) {
    const TemporaryFolder folder;
    std::filesystem::create_directory(folder.path("there"));
    std::filesystem::permissions(folder.path("there"), std::filesystem::perms(0755));
    ASSERT_TRUE(createFolders(folder.path("there/a//b/c/")));
    ASSERT_TRUE(createFolders(folder.path("there/a")));
    for (const auto& [name, mode] : {std::pair("there", 0755), {"there/a", 0700}, {"there/a/b/c", 0700}})
        EXPECT_EQ(std::filesystem::status(folder.path(name)).permissions(), std::filesystem::perms(mode)) << name;
    folder.write("file", "x");
    std::filesystem::create_symlink("nowhere", folder.path("dangling"));
    EXPECT_EQ(createFolders(folder.path("file/a/b")).error().number, ENOTDIR);
    EXPECT_EQ(createFolders(folder.path("file")).error().number, ENOTDIR);
    EXPECT_FALSE(createFolders(folder.path("dangling/a")));
    EXPECT_EQ(createFolders("").error().number, ENOENT);
}

}  // namespace
}  // namespace orvane
