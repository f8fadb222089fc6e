#include <gtest/gtest.h>
#include <signal.h>

#include <atomic>
#include <latch>
#include <stdexcept>
#include <thread>

#include "Platform/BackgroundPool.h"
#include "Platform/ManualMainLoop.h"
#include "Platform/SerialQueue.h"
#include "Platform/WholeFileWriter.h"
#include "Support/TemporaryFolder.h"

namespace orvane {
namespace {

TEST(BackgroundPool, FinishesEverythingBeforeItGoesWithSignalsBlocked) {
    std::atomic<int> done = 0;
    std::atomic<int> deliverable = 0;
    {
        BackgroundPool pool(3);
        for (int index = 0; index < 500; ++index) {
            pool.submit([&] {
                sigset_t blocked;
                pthread_sigmask(SIG_BLOCK, nullptr, &blocked);
                if (sigismember(&blocked, SIGTERM) == 0 || sigismember(&blocked, SIGCHLD) == 0) ++deliverable;
                pool.submit([&] { ++done; });
            });
        }
    }
    EXPECT_EQ(done, 500);
    EXPECT_EQ(deliverable, 0);
    sigset_t ours;
    pthread_sigmask(SIG_BLOCK, nullptr, &ours);
    EXPECT_EQ(sigismember(&ours, SIGTERM), 0);

    BackgroundPool pool(4);
    std::latch together(5);  // reached only when the pool runs four tasks at once
    for (int index = 0; index < 4; ++index)
        pool.submit([&] { together.arrive_and_wait(); });
    together.arrive_and_wait();
}

TEST(BackgroundPool, BringsResultsToTheLoopAndReportsExceptions) {
    ManualMainLoop loop;
    BackgroundPool pool(2);
    std::unique_ptr<int> result;
    bool wasVoidDone = false;
    runInBackground(
        pool, loop, [] { return std::make_unique<int>(42); },
        [&](std::unique_ptr<int> value) { result = std::move(value); });
    runInBackground(pool, loop, [] {}, [&] { wasVoidDone = true; });
    ASSERT_TRUE(loop.runUntil([&] { return result && wasVoidDone; }));
    EXPECT_EQ(*result, 42);

    bool wasDone = false;
    std::thread::id destroyedOn;
    const auto note = [&](void*) { destroyedOn = std::this_thread::get_id(); };
    testing::internal::CaptureStderr();
    runInBackground(
        pool, loop, []() -> int { throw std::runtime_error("the reason"); },
        [&wasDone, witness = std::shared_ptr<void>(nullptr, note)](int) { wasDone = true; });
    EXPECT_TRUE(loop.runUntil([&] { return destroyedOn != std::thread::id(); }));
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "orvane: a background task failed: the reason\n");
    EXPECT_FALSE(wasDone);
    EXPECT_EQ(destroyedOn, std::this_thread::get_id());
}

TEST(SerialQueue, RunsTasksOfManyThreadsOneAtATimeAndInOrder) {
    BackgroundPool pool(4);
    SerialQueue queue(pool);
    std::vector<std::pair<int, int>> order;  // unguarded on purpose: the queue alone keeps its tasks apart
    {
        std::vector<std::jthread> producers;
        for (int producer = 0; producer < 3; ++producer) {
            producers.emplace_back([&, producer] {
                for (int index = 0; index < 300; ++index) {
                    queue.submit([&order, producer, index] { order.emplace_back(producer, index); });
                    if (index % 100 == 99) queue.flush();
                }
            });
        }
    }
    queue.flush();
    ASSERT_EQ(order.size(), 900U);
    std::ranges::stable_sort(order, {}, &std::pair<int, int>::first);
    EXPECT_TRUE(std::ranges::is_sorted(order));
}

TEST(SerialQueue, FlushNeedsNoFreeThread) {
    BackgroundPool pool(1);
    std::latch release(1);
    pool.submit([&] { release.wait(); });
    std::string done;
    {
        SerialQueue queue(pool);
        queue.submit([&] { done += 'a'; });
        queue.submit([&] {
            done += 'b';
            queue.submit([&] { done += 'c'; });
            throw std::runtime_error("must not stop the others");
        });
        testing::internal::CaptureStderr();
        queue.flush();
        testing::internal::GetCapturedStderr();
        EXPECT_EQ(done, "ab");
    }
    EXPECT_EQ(done, "abc");
    release.count_down();
}

struct WholeFileWriterTest : testing::Test {
    TemporaryFolder folder;
    ManualMainLoop loop;
    BackgroundPool pool{1};
    SerialQueue queue{pool};
    std::vector<std::string> errors;

    WholeFileWriter::ErrorCallback note() {
        return [this](const SystemError& error) { errors.push_back(error.message()); };
    }
};

TEST_F(WholeFileWriterTest, WritesTheNewestOnFlushAndAtItsEnd) {
    WholeFileWriter writer(loop, queue, folder.path("file"), note());
    std::latch release(1);
    queue.submit([&] { release.wait(); });
    writer.write("first");
    writer.write("second");
    EXPECT_TRUE(folder.names().empty());
    release.count_down();
    EXPECT_TRUE(writer.flush());
    EXPECT_EQ(folder.read("file"), "second");
    {
        WholeFileWriter other(loop, queue, folder.path("other"), note());
        other.write("last");
    }
    EXPECT_EQ(folder.read("other"), "last");
    loop.runPosted();
    EXPECT_TRUE(errors.empty());
}

TEST_F(WholeFileWriterTest, TellsAFailureOnceKeepsTheContentAndTriesAgain) {
    WholeFileWriter writer(loop, queue, folder.path("sub/file"), note());
    writer.write("one");
    EXPECT_EQ(writer.flush().error().number, ENOENT);
    writer.write("two");
    EXPECT_EQ(writer.flush().error().number, ENOENT);
    loop.runPosted();
    EXPECT_EQ(errors.size(), 1U);
    folder.write("sub", "in the way");
    EXPECT_EQ(writer.flush().error().number, ENOTDIR);
    loop.runPosted();
    EXPECT_EQ(errors.size(), 2U);

    std::filesystem::remove(folder.path("sub"));
    std::filesystem::create_directory(folder.path("sub"));
    EXPECT_TRUE(writer.flush());
    EXPECT_EQ(folder.read("sub/file"), "two");

    {
        WholeFileWriter lost(loop, queue, folder.path("none/file"), note());
        lost.write("x");
        testing::internal::CaptureStderr();
    }
    EXPECT_NE(testing::internal::GetCapturedStderr().find("not saved: open the folder of"), std::string::npos);
    loop.runPosted();
    EXPECT_EQ(errors.size(), 2U);  // its owner is gone
}

}  // namespace
}  // namespace orvane
