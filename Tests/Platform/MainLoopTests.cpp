#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <thread>

#include "Platform/FileDescriptor.h"
#include "Support/RunUntil.h"

namespace orvane {
namespace {

using namespace std::chrono_literals;

struct Pipe {
    FileDescriptor readEnd;
    FileDescriptor writeEnd;

    Pipe() {
        std::array<int, 2> ends{};
        EXPECT_EQ(pipe2(ends.data(), O_CLOEXEC | O_NONBLOCK), 0);
        readEnd = FileDescriptor(ends[0]);
        writeEnd = FileDescriptor(ends[1]);
    }

    void put(std::string_view bytes) const { EXPECT_GT(write(writeEnd.number(), bytes.data(), bytes.size()), 0); }
    char take() const {
        char byte = 0;
        return read(readEnd.number(), &byte, 1) == 1 ? byte : '\0';
    }
};

TEST(ManualMainLoop, FiresTimersAtTheirTimesInOrderAndStopsWithTheirRegistration) {
    ManualMainLoop loop;
    std::string log;
    const Instant start = loop.now();
    const auto note = [&](char name) { log += name + std::to_string((loop.now() - start) / 1ms) + ' '; };
    auto late = loop.after(30ms, [&] { note('l'); });
    auto early = loop.after(10ms, [&] {
        loop.post([&] { note('p'); });
        note('e');
    });
    Registration repeating = loop.every(20ms, 5ms, [&] {
        note('r');
        if (loop.now() - start >= 60ms) repeating.reset();
    });
    auto cancelled = loop.after(5ms, [&] { note('c'); });
    cancelled.reset();
    loop.advance(1s);
    EXPECT_EQ(log, "e10 p10 r20 l30 r40 r60 ");
}

TEST(TimerQueue, JoinsTimersWithinTheirToleranceAndSkipsMissedRuns) {
    const auto queue = std::make_shared<TimerQueue>();
    const Instant zero{};
    int runs = 0;
    const auto tight = queue->add({.due = zero + 10ms, .tolerance = {}, .interval = {}, .task = [&] { ++runs; }});
    const auto loose = queue->add({.due = zero + 5ms, .tolerance = 50ms, .interval = 100ms, .task = [&] { ++runs; }});
    EXPECT_EQ(queue->wakeTime(), zero + 10ms);
    queue->fireDue(zero + 10ms);
    EXPECT_EQ(runs, 2);
    EXPECT_EQ(queue->nextDue(), zero + 105ms);  // the lateness of a run does not move the next
    queue->fireDue(zero + 10s);
    EXPECT_EQ(runs, 3);
    EXPECT_EQ(queue->nextDue(), zero + 10005ms);
}

TEST(TimerQueue, SurvivesTimersThatRemoveEachOtherAndThemselves) {
    const auto queue = std::make_shared<TimerQueue>();
    std::string log;
    Registration first, second, third;
    const auto add = [&](std::function<void()> task) { return queue->add({.due = {}, .interval = 1ms, .task = task}); };
    first = add([&] {
        log += '1';
        first.reset();
        second.reset();
    });
    second = add([&] { log += '2'; });
    third = add([&] {
        log += '3';
        third = add([&] { log += '4'; });
    });
    queue->fireDue({});
    EXPECT_EQ(log, "13");
    queue->fireDue({});
    EXPECT_EQ(log, "134");
}

template <typename Loop>
class MainLoopTest : public testing::Test {};
using Loops = testing::Types<ManualMainLoop, AsioMainLoop>;
TYPED_TEST_SUITE(MainLoopTest, Loops);

TYPED_TEST(MainLoopTest, TellsReadyDescriptors) {
    TypeParam loop;
    const auto serve = [&](const std::function<bool()>& condition) { ASSERT_TRUE(runUntil(loop, condition)); };
    Pipe in;
    std::string read;
    Registration reading = loop.watch(in.readEnd.number(), Readiness::readable, [&] {
        // One byte a turn: what is left must be told again.
        read += in.take();
    });
    in.put("ab");
    serve([&] { return read == "ab"; });

    int writable = 0;
    Registration writing = loop.watch(in.writeEnd.number(), Readiness::writable, [&] {
        ++writable;
        writing.reset();
    });
    serve([&] { return writable == 1; });

    // A closed descriptor whose number is used again at once must not confuse the loop.
    reading.reset();
    in = Pipe();
    Pipe again;
    bool ended = false;
    reading = loop.watch(again.readEnd.number(), Readiness::readable, [&] {
        ended = true;
        reading.reset();
    });
    again.writeEnd.close();
    serve([&] { return ended; });
}

TEST(MainLoop, ReadAndWriteWatchesOfOneDescriptorAreIndependent) {
    AsioMainLoop loop;
    const Pipe pipe;
    int told = 0;
    Registration first = loop.watch(pipe.writeEnd.number(), Readiness::writable, [&] { first.reset(); });
    const auto second = loop.watch(pipe.writeEnd.number(), Readiness::writable, [&] { told += first ? 0 : 1; });
    EXPECT_TRUE(runUntil(loop, [&] { return told >= 3; }));
}

TEST(MainLoop, RealLoopRunsPostsFromOtherThreadsInOrderAndTimers) {
    AsioMainLoop loop;
    std::vector<int> order;
    bool fired = false;
    const std::jthread poster([&] {
        for (int index = 0; index < 1000; ++index)
            loop.post([&, index] { order.push_back(index); });
    });
    const auto timer = loop.after(0ms, [&] { fired = true; });
    EXPECT_TRUE(runUntil(loop, [&] { return fired && order.size() == 1000; }));
    EXPECT_TRUE(std::ranges::is_sorted(order));
}

TEST(MainLoop, RegistrationsMayOutliveTheirLoop) {
    Pipe pipe;
    Registration timer;
    Registration watch;
    {
        AsioMainLoop loop;
        timer = loop.after(1h, [] {});
        watch = loop.watch(pipe.readEnd.number(), Readiness::readable, [] {});
    }
    timer.reset();
    watch.reset();
    pipe.put("x");
    EXPECT_EQ(pipe.take(), 'x');  // the descriptor stayed ours
}

}  // namespace
}  // namespace orvane
