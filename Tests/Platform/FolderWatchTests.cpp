#include "Platform/FolderWatch.h"

#include <fcntl.h>
#include <gmock/gmock.h>

#include "Platform/FileDescriptor.h"
#include "Platform/ManualMainLoop.h"
#include "Support/TemporaryFolder.h"

namespace orvane {
namespace {

using namespace std::chrono_literals;
using Change = FolderWatch::Change;
using testing::ElementsAre;

struct FolderWatchTest : testing::Test {
    TemporaryFolder root;
    std::string path = root.path("watched");
    ManualMainLoop loop;
    std::vector<Change> told;
    std::unique_ptr<FolderWatch> watch;

    void SetUp() override {
        std::filesystem::create_directory(path);
        told.clear();
        watch = FolderWatch::create(loop, path, [this](Change change) { told.push_back(change); }).value();
    }

    /// Lets the loop look at its descriptors, inotify having queued an event within the call that causes it, and time
    /// go by.
    void wait(std::chrono::milliseconds span) {
        int turns = 0;
        ASSERT_TRUE(loop.runUntil([&] { return ++turns > 2; }));
        loop.advance(span);
    }
};

TEST_F(FolderWatchTest, JoinsTheChangesOfASpan) {
    for (const std::string name : {"a", "b", "c"})
        root.write("watched/" + name, "x");
    wait(60ms);
    std::filesystem::remove(path + "/a");
    wait(39ms);
    EXPECT_TRUE(told.empty());
    loop.advance(1ms);
    EXPECT_EQ(told.size(), 1U);
    wait(10s);
    EXPECT_EQ(told.size(), 1U) << "nothing changed since";
    std::filesystem::rename(path + "/b", path + "/d");
    wait(100ms);
    EXPECT_THAT(told, ElementsAre(Change::contents, Change::contents));
    std::filesystem::create_directory(root.path("sibling"));
    std::filesystem::remove(root.path("sibling"));
    wait(10s);
    EXPECT_EQ(told.size(), 2U) << "a neighbour's end is not ours";
}

TEST_F(FolderWatchTest, TellsWhenTheFolderGoesAndThenNoMore) {
    const auto expectGone = [this](const char* how) {
        wait(100ms);
        EXPECT_THAT(told, ElementsAre(Change::folderGone)) << how;
        std::filesystem::create_directory(path);
        root.write("watched/late", "x");
        wait(10s);
        EXPECT_EQ(told.size(), 1U) << how;
        std::filesystem::remove_all(path);
        SetUp();
    };
    std::filesystem::remove(path);
    expectGone("removed");
    std::filesystem::rename(path, root.path("elsewhere"));
    expectGone("moved");
    const FileDescriptor held(open(path.c_str(), O_PATH | O_CLOEXEC));
    std::filesystem::remove(path);
    expectGone("removed while in use");
}

TEST_F(FolderWatchTest, MayBeDestroyedInItsCallbackAndRefusesFiles) {
    watch = FolderWatch::create(loop, path, [this](Change change) {
                told.push_back(change);
                watch.reset();
            }).value();
    root.write("watched/a", "x");
    wait(1s);
    root.write("watched/b", "x");
    wait(1s);
    EXPECT_EQ(told.size(), 1U);
    EXPECT_EQ(FolderWatch::create(loop, path + "/a", [](Change) {}).error().number, ENOTDIR);
    EXPECT_EQ(FolderWatch::create(loop, path + "/none", [](Change) {}).error().number, ENOENT);
}

}  // namespace
}  // namespace orvane
