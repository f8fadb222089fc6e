#include "Platform/WriteQueue.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <array>
#include <csignal>

#include "Platform/FileDescriptor.h"
#include "Platform/ManualMainLoop.h"

namespace orvane {
namespace {

struct WriteQueueTest : testing::Test {
    WriteQueueTest() { std::signal(SIGPIPE, SIG_IGN); }

    void write(const std::string& bytes) {
        queue.write(bytes, [this](const WriteQueue::Completion& completion) {
            ends.emplace_back(completion.written, completion.error ? completion.error->number : 0);
        });
    }

    ManualMainLoop loop;
    std::array<int, 2> pipeEnds = [] {
        std::array<int, 2> both{};
        EXPECT_EQ(pipe2(both.data(), O_NONBLOCK | O_CLOEXEC), 0);
        return both;
    }();
    FileDescriptor output{pipeEnds[0]};
    FileDescriptor input{pipeEnds[1]};
    WriteQueue queue{loop, input.number(), 1'000'000};
    std::vector<std::pair<std::size_t, int>> ends;  ///< bytes written and errno of each write
    const std::string large = std::string(600'000, 'x');
};

TEST_F(WriteQueueTest, completesEachWriteInOrderAndRefusesWhatItCannotHold) {
    write("one");
    write("");
    EXPECT_EQ(ends, (std::vector<std::pair<std::size_t, int>>{{3, 0}, {0, 0}}));
    write(large);
    write("two");
    write(large);  // beyond the limit, so at once
    EXPECT_EQ(ends.back(), (std::pair<std::size_t, int>{0, ENOBUFS}));
    std::string received;
    ASSERT_TRUE(loop.runUntil([&] {
        std::array<char, 65536> buffer{};
        const ssize_t count = read(output.number(), buffer.data(), buffer.size());
        if (count > 0) received.append(buffer.data(), static_cast<std::size_t>(count));
        return ends.size() == 5;
    }));
    EXPECT_EQ(ends[3].first, large.size());
    EXPECT_EQ(ends[4].first, 3);
    EXPECT_TRUE(("one" + large + "two").starts_with(received));
}

TEST_F(WriteQueueTest, aFailureEndsAllThatWaitAndLeavesRoom) {
    write(large);
    write("two");
    EXPECT_TRUE(ends.empty());
    output.close();
    ASSERT_TRUE(loop.runUntil([&] { return ends.size() == 2; }));
    EXPECT_EQ(ends[0].second, EPIPE);
    EXPECT_EQ(ends[1], (std::pair<std::size_t, int>{0, EPIPE}));
    write(large);
    EXPECT_EQ(ends.back().second, EPIPE);
    write(large);
    EXPECT_EQ(ends.back().second, EPIPE);
}

}  // namespace
}  // namespace orvane
