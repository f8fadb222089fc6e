#include "Platform/ReadChannel.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <array>

#include "Platform/LoopThread.h"
#include "Support/RunUntil.h"

namespace orvane {
namespace {

struct ReadChannelTest : testing::Test {
    ManualMainLoop loop;
    LoopThread reader;
    FileDescriptor writeEnd;
    std::size_t received = 0;
    bool hasEnded = false;

    FileDescriptor makePipe() {
        std::array<int, 2> ends{};
        EXPECT_EQ(pipe2(ends.data(), O_CLOEXEC | O_NONBLOCK), 0);
        writeEnd = FileDescriptor(ends[1]);
        return FileDescriptor(ends[0]);
    }

    /// Writes all that goes in until nothing more does for a while.
    std::size_t fill() {
        const std::string bytes(4096, 'x');
        std::size_t total = 0;
        for (int idle = 0; idle < 200;) {
            const ssize_t count = write(writeEnd.number(), bytes.data(), bytes.size());
            if (count > 0) {
                total += static_cast<std::size_t>(count);
                idle = 0;
            } else {
                ++idle;
                usleep(500);
            }
        }
        return total;
    }

    ReadChannel::Callbacks callbacks() {
        return {.onData = [this](std::string_view bytes) { received += bytes.size(); },
                .onEnd = [this] { hasEnded = true; }};
    }
};

TEST_F(ReadChannelTest, stopsReadingWhenTooMuchWaitsAndGoesOnLater) {
    constexpr std::size_t highWater = 200'000;
    ReadChannel channel(
        loop, reader.loop(), makePipe(),
        {.readSize = 10'000, .highWater = highWater, .lowWater = 50'000, .quietTime = std::chrono::hours(1)},
        callbacks());
    // Nothing is delivered meanwhile: the queue and the pipe fill up, and no more is taken.
    const std::size_t taken = fill();
    EXPECT_GE(taken, highWater);
    EXPECT_LT(taken, highWater + 10'000 + 70'000);
    EXPECT_EQ(received, 0);
    ASSERT_TRUE(runUntil(loop, [&] { return received == taken; }));
    const std::size_t more = fill();
    EXPECT_GE(more, highWater) << "reading went on";
    writeEnd.close();
    ASSERT_TRUE(runUntil(loop, [&] { return hasEnded; }));
    EXPECT_EQ(received, taken + more) << "the end comes behind all bytes";
}

TEST_F(ReadChannelTest, deliversInSlicesThatLeaveTheLoopFree) {
    int turns = 0;
    bool isSlow = true;
    ReadChannel channel(loop, reader.loop(), makePipe(), {.readSize = 1000, .timeSlice = std::chrono::milliseconds(4)},
                        {.onData =
                             [&](std::string_view bytes) {
                                 received += bytes.size();
                                 if (isSlow) loop.advance(std::chrono::milliseconds(3));
                             },
                         .onEnd = [&] { hasEnded = true; }});
    const std::string bytes(20'000, 'x');
    ASSERT_EQ(write(writeEnd.number(), bytes.data(), bytes.size()), 20'000);
    std::size_t largestTurn = 0;
    std::size_t before = 0;
    const auto counter = loop.every(std::chrono::milliseconds(1), {}, [&] {
        ++turns;
        largestTurn = std::max(largestTurn, received - before);
        before = received;
    });
    ASSERT_TRUE(runUntil(loop, [&] { return received == bytes.size(); }));
    EXPECT_LE(largestTurn, 3000) << "two pieces of 3 ms fill a slice of 4 ms";
    EXPECT_GT(turns, 5);
}

TEST_F(ReadChannelTest, drainsBehindTheEndOfAQuietProgram) {
    for (const bool endsFirst : {true, false}) {
        hasEnded = false;
        received = 0;
        ReadChannel channel(
            loop, reader.loop(), makePipe(), {.quietTime = {}},
            {.onData = [&](std::string_view bytes) { received += bytes.size(); }, .onEnd = [&] { hasEnded = true; }});
        ASSERT_EQ(write(writeEnd.number(), "hello", 5), 5);
        ASSERT_TRUE(runUntil(loop, [&] { return received == 5; }));
        writeEnd.close();
        ASSERT_TRUE(runUntil(loop, [&] { return hasEnded || !endsFirst; }));
        int drained = 0;
        channel.whenDrained([&] { ++drained; });
        ASSERT_TRUE(runUntil(loop, [&] { return drained == 1 && hasEnded; })) << endsFirst;
        channel.whenDrained([&] { ++drained; });
        ASSERT_TRUE(runUntil(loop, [&] { return drained == 2; })) << endsFirst;
    }
}

TEST_F(ReadChannelTest, keepsTheOrderWhileItReadsHereAndThere) {
    std::string all;
    ReadChannel channel(loop, reader.loop(), makePipe(), {.quietTime = {}},
                        {.onData = [&](std::string_view bytes) { all += bytes; }, .onEnd = [&] { hasEnded = true; }});
    std::string expected;
    std::size_t drained = 0;
    const auto send = [&](std::size_t size) {
        for (std::size_t sent = 0; sent < size;) {
            const std::string piece = std::to_string(expected.size()) + " ";
            if (write(writeEnd.number(), piece.data(), piece.size()) < 0) {
                // The pipe is full.
                const std::size_t before = all.size();
                ASSERT_TRUE(runUntil(loop, [&] { return all.size() > before; }));
                continue;
            }
            expected += piece;
            sent += piece.size();
        }
    };
    for (int round = 0; round < 200; ++round) {
        send(round % 7 == 0 ? 100'000 : 10);
        const std::size_t before = expected.size();
        if (round % 3 == 0) {
            channel.whenDrained([&, before] {
                ++drained;
                EXPECT_GE(all.size(), before);
            });
        }
        if (round % 2 == 0) {
            ASSERT_TRUE(runUntil(loop, [&] { return all.size() == expected.size(); })) << "round " << round;
        }
    }
    writeEnd.close();
    ASSERT_TRUE(runUntil(loop, [&] { return hasEnded; }));
    EXPECT_TRUE(all == expected) << "another order";
    EXPECT_EQ(drained, 67U);
}

TEST_F(ReadChannelTest, drainsWhatIsThereBeforeATaskRunsAndMayGoAtAnyTime) {
    auto channel = std::make_unique<ReadChannel>(loop, reader.loop(), makePipe(), ReadChannel::Limits{}, callbacks());
    ASSERT_EQ(write(writeEnd.number(), "abc", 3), 3);
    std::size_t atDrain = 0;
    bool isDrained = false;
    channel->whenDrained([&] {
        isDrained = true;
        atDrain = received;
        channel.reset();
    });
    ASSERT_TRUE(runUntil(loop, [&] { return isDrained; }));
    EXPECT_EQ(atDrain, 3);
    EXPECT_EQ(channel, nullptr);
    EXPECT_FALSE(hasEnded);
}

}  // namespace
}  // namespace orvane
