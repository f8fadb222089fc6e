// What goes over a connection besides requests and replies: descriptors, and the input of streams.

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/stat.h>

#include "Platform/DescriptorPassing.h"
#include "Platform/LineClient.h"
#include "Platform/LineServer.h"
#include "Platform/ManualMainLoop.h"
#include "Platform/UnixSocket.h"
#include "Support/OpenDescriptors.h"
#include "Support/TemporaryFolder.h"

namespace orvane {
namespace {

using namespace std::chrono_literals;

/// A server that notes each request and how many descriptors it took with it. "leave" takes none, "wait" is answered by
/// the test, "stream" begins a stream.
class LineServerStreamTest : public testing::Test {
 protected:
    LineServerStreamTest() { server_.serve(std::move(*UnixSocket::listenAt(path_))); }

    void handle(const std::shared_ptr<LineServer::Connection>& connection, std::string_view line) {
        held_ = connection;
        if (line == "wait") return;
        if (line == "stream" || line == "deaf") {
            connection->beginStream();
            if (line == "stream") takeInput();
            return connection->stream("begun");
        }
        if (line != "leave") taken_ = connection->takeDescriptors();
        noted_.push_back(std::string(line) + ' ' + std::to_string(taken_.size()));
        connection->reply(line);
    }

    void takeInput() {
        held_->onInput([this](std::string_view line) {
            noted_.push_back("input " + std::string(line));
            if (line == "end") held_->reply("over");
        });
    }

    FileDescriptor connect() { return std::move(*UnixSocket::connectTo(path_)); }

    void send(const FileDescriptor& client, std::string_view bytes, std::size_t descriptors = 0) const {
        const std::vector<int> numbers(descriptors, sent_.number());
        ASSERT_EQ(DescriptorPassing::send(client.number(), bytes, numbers), std::ssize(bytes));
    }

    testing::AssertionResult notes(const std::vector<std::string>& expected) {
        const bool isEqual = loop_.runUntil([&] { return noted_.size() >= expected.size(); }) && noted_ == expected;
        if (isEqual) return noted_.clear(), testing::AssertionSuccess();
        return testing::AssertionFailure() << testing::PrintToString(noted_);
    }

    void settle() {
        EXPECT_TRUE(loop_.runUntil([turns = 0]() mutable { return ++turns > 5; }));
    }

    FileDescriptor sent_{open("/dev/null", O_RDWR | O_CLOEXEC)};
    ManualMainLoop loop_;
    TemporaryFolder folder_;
    std::string path_ = folder_.path("socket");
    std::shared_ptr<LineServer::Connection> held_;
    std::vector<FileDescriptor> taken_;
    std::vector<std::string> noted_;
    LineServer server_{loop_,
                       {.onRequest = [this](const auto& client, std::string_view line) { handle(client, line); },
                        .faultReply = [this](LineServer::Fault) { return noted_.emplace_back("fault"); }},
                       {.requestSizeInBytes = 1000, .descriptors = 9}};
};

TEST_F(LineServerStreamTest, DescriptorsGoWithTheLineTheyWereSentWith) {
    auto client = LineClient::connect(path_);
    ASSERT_TRUE(client.has_value());
    const int both[] = {client->descriptor(), client->descriptor()};
    ASSERT_TRUE(client->send("first", both) && client->send("second"));
    EXPECT_TRUE(notes({"first 2", "second 0"}));

    // However many writes wait by the time they are read, and wherever lines begin in them.
    const auto raw = connect();
    send(raw, "a\nb\nc");
    send(raw, "c\nd\n", 3);
    send(raw, "e\nf\n", 1);
    send(raw, std::string(800, 'g'));
    send(raw, "\nh\n");
    EXPECT_TRUE(notes({"a 0", "b 0", "cc 3", "d 0", "e 1", "f 0", std::string(800, 'g') + " 0", "h 0"}));
    send(raw, "x", 2);
    send(raw, "y", 2);
    send(raw, "z\n");
    EXPECT_TRUE(notes({"xyz 4"}));
    ASSERT_EQ(taken_.size(), 4U);
    struct stat sent{};
    struct stat got{};
    ASSERT_EQ(fstat(sent_.number(), &sent) + fstat(taken_[0].number(), &got), 0);
    EXPECT_EQ(sent.st_rdev, got.st_rdev) << "it is what was sent";
    EXPECT_NE(fcntl(taken_[0].number(), F_GETFD) & FD_CLOEXEC, 0);
}

TEST_F(LineServerStreamTest, DescriptorsThatNobodyTakesAreClosed) {
    const auto client = connect();
    const auto other = connect();
    send(client, "a\n");
    send(other, "a\n");
    EXPECT_TRUE(notes({"a 0", "a 0"}));
    const std::size_t before = openDescriptors();
    send(client, "leave\n", 4);
    send(client, std::string(2000, 'x') + '\n', 4);
    EXPECT_TRUE(notes({"leave 0", "fault"}));
    EXPECT_EQ(openDescriptors(), before);

    // Too many for one request, and too many of all that wait.
    send(client, "five\n", 5);
    send(client, "four", 4);
    send(client, "+1\n", 1);
    send(client, "four\n", 4);
    EXPECT_TRUE(notes({"five 0", "four+1 0", "four 4"}));
    taken_.clear();
    EXPECT_EQ(openDescriptors(), before);
    send(client, "wait\n", 4);
    for (int count = 0; count < 100; ++count)
        send(client, "b\n", 4);
    settle();
    send(other, "c\n", 2);
    EXPECT_TRUE(notes({"c 0"}));
    EXPECT_LE(openDescriptors(), before + 9);
}

TEST_F(LineServerStreamTest, AClientThatLeavesTakesItsDescriptorsAlong) {
    const std::size_t before = openDescriptors();
    for (const char* line : {"deaf\nnext\n", "half a line"}) {
        {
            const auto client = connect();
            send(client, line, 4);
            EXPECT_TRUE(loop_.runUntil([&] { return server_.connectionCount() == 1; })) << line;
            settle();
        }
        EXPECT_TRUE(loop_.runUntil([&] { return server_.connectionCount() == 0; })) << line;
        held_.reset();
        EXPECT_EQ(openDescriptors(), before) << line;
    }
}

TEST_F(LineServerStreamTest, InputOfAStreamIsTakenLineByLine) {
    const auto client = connect();
    send(client, "stream\nat once\r\n\nhal");
    EXPECT_TRUE(notes({"input at once", "input "}));
    send(client, "f\n" + std::string(1000, 'l') + '\n' + std::string(5000, 'x') + "\nafter\n");
    EXPECT_TRUE(notes({"input half", "input " + std::string(1000, 'l'), "input after"}));
    send(client, "more\nend\nlost\nlost to");
    EXPECT_TRUE(notes({"input more", "input end"}));
    // What was begun while it was open is no request.
    send(client, "o\nrequest\n");
    EXPECT_TRUE(notes({"request 0"}));

    // Many lines at once hold up nobody, and none is lost.
    std::string many = "stream\n";
    std::vector<std::string> expected;
    for (int count = 0; count < 500; ++count) {
        many += std::to_string(count) + '\n';
        expected.push_back("input " + std::to_string(count));
    }
    send(client, many);
    EXPECT_TRUE(notes(expected));
    loop_.advance(1h);
    EXPECT_EQ(server_.connectionCount(), 1U) << "a stream may be silent";
}

TEST_F(LineServerStreamTest, InputThatCameBeforeTheStreamBeganWaitsForIt) {
    const auto client = connect();
    send(client, "wait\nearly\n" + std::string(900, 'e') + '\n' + std::string(900, 'f') + "\nlate");
    EXPECT_TRUE(loop_.runUntil([&] { return held_ != nullptr; }));
    settle();
    held_->beginStream();
    takeInput();
    EXPECT_TRUE(noted_.empty()) << "not within the call";
    EXPECT_TRUE(notes({"input early", "input " + std::string(900, 'e'), "input " + std::string(900, 'f')}));
    send(client, "r\n");
    EXPECT_TRUE(notes({"input later"}));
}

TEST_F(LineServerStreamTest, InputThatNobodyTakesIsDropped) {
    auto client = connect();
    send(client, "deaf\nlost\nlo");
    settle();
    send(client, "st\nlost t");
    settle();
    held_->reply("over");
    send(client, "oo\nrequest\n");
    EXPECT_TRUE(notes({"request 0"}));
    send(client, "deaf\n");
    settle();
    client.close();
    EXPECT_TRUE(loop_.runUntil([&] { return server_.connectionCount() == 0; }));
}

}  // namespace
}  // namespace orvane
