#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <thread>

#include "Platform/AsioMainLoop.h"
#include "Platform/FileDescriptor.h"
#include "Platform/ManualMainLoop.h"

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

    void put(char byte) const { EXPECT_EQ(write(writeEnd.number(), &byte, 1), 1); }
    char take() const {
        char byte = 0;
        return read(readEnd.number(), &byte, 1) == 1 ? byte : '\0';
    }
};

TEST(ManualMainLoop, FiresTimersAtTheirTimesInOrderAndStopsWithTheirRegistration) {
    ManualMainLoop loop;
    std::string log;
    const Instant start = loop.now();
    const auto note = [&](char name) {
        log += name;
        log += std::to_string((loop.now() - start) / 1ms) + ' ';
    };
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
    Registration first;
    Registration second;
    Registration third;
    first = queue->add({.due = {}, .interval = 1ms, .task = [&] {
                            log += '1';
                            first.reset();
                            second.reset();
                        }});
    second = queue->add({.due = {}, .interval = 1ms, .task = [&] { log += '2'; }});
    third = queue->add({.due = {}, .task = [&] {
                            log += '3';
                            third = queue->add({.due = {}, .task = [&] { log += '4'; }});
                        }});
    queue->fireDue({});
    EXPECT_EQ(log, "13");
    queue->fireDue({});
    EXPECT_EQ(log, "134");
}

/// The same promises, kept by both loops: `serve` runs the loop until the condition holds.
template <typename Serve>
void checkDescriptors(MainLoop& loop, Serve serve) {
    Pipe in;
    std::string read;
    Registration reading = loop.watch(in.readEnd.number(), Readiness::readable, [&] {
        // One byte a turn: what is left must be told again.
        read += in.take();
    });
    in.put('a');
    in.put('b');
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

TEST(MainLoop, ManualLoopTellsReadyDescriptors) {
    ManualMainLoop loop;
    checkDescriptors(loop, [&](const std::function<bool()>& condition) { ASSERT_TRUE(loop.runUntil(condition)); });
}

TEST(MainLoop, RealLoopTellsReadyDescriptors) {
    AsioMainLoop loop;
    checkDescriptors(loop, [&](const std::function<bool()>& condition) {
        auto poll = loop.every(1ms, {}, [&] {
            if (condition()) loop.stop();
        });
        auto limit = loop.after(20s, [&] { loop.stop(); });
        loop.run();
        ASSERT_TRUE(condition());
    });
}

TEST(MainLoop, ReadAndWriteWatchesOfOneDescriptorAreIndependent) {
    AsioMainLoop loop;
    std::array<int, 2> ends{};
    ASSERT_EQ(pipe2(ends.data(), O_CLOEXEC | O_NONBLOCK), 0);
    const FileDescriptor readEnd(ends[0]);
    const FileDescriptor writeEnd(ends[1]);
    int told = 0;
    Registration second;
    Registration first = loop.watch(writeEnd.number(), Readiness::writable, [&] { first.reset(); });
    second = loop.watch(writeEnd.number(), Readiness::writable, [&] {
        if (!first && ++told == 3) loop.stop();
    });
    auto limit = loop.after(20s, [&] { loop.stop(); });
    loop.run();
    EXPECT_EQ(told, 3);
}

TEST(MainLoop, RealLoopRunsPostsFromOtherThreadsInOrderAndTimers) {
    AsioMainLoop loop;
    std::vector<int> order;
    int ended = 0;  // the posts and the timer, in either order
    const auto end = [&] {
        if (++ended == 2) loop.stop();
    };
    std::jthread poster([&] {
        for (int index = 0; index < 1000; ++index)
            loop.post([&, index] { order.push_back(index); });
        loop.post(end);
    });
    auto timer = loop.after(0ms, end);
    auto limit = loop.after(20s, [&] { loop.stop(); });
    loop.run();
    EXPECT_EQ(ended, 2);
    ASSERT_EQ(order.size(), 1000U);
    EXPECT_TRUE(std::is_sorted(order.begin(), order.end()));
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
    pipe.put('x');
    EXPECT_EQ(pipe.take(), 'x');  // the descriptor stayed ours
}

}  // namespace
}  // namespace orvane
