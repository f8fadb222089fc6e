#include "Platform/LineServer.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/socket.h>

#include "Platform/LineClient.h"
#include "Platform/ManualMainLoop.h"
#include "Platform/UnixSocket.h"
#include "Support/TemporaryFolder.h"

namespace orvane {
namespace {

using namespace std::chrono_literals;

/// A server that answers every line with "<" + line + ">", holds back the answer to "hold" and streams for "stream".
class LineServerTest : public testing::Test {
 protected:
    LineServerTest() { server_.serve(std::move(*UnixSocket::listenAt(path_))); }

    /// A connected client whose reads do not block; the test serves the loop in between.
    FileDescriptor connect() {
        auto socket = UnixSocket::connectTo(path_);
        EXPECT_TRUE(socket.has_value());
        fcntl(socket->number(), F_SETFL, O_NONBLOCK);
        return std::move(*socket);
    }

    void sendAll(const FileDescriptor& client, std::string_view bytes) {
        const bool sent = loop_.runUntil([&] {
            const ssize_t length = send(client.number(), bytes.data(), bytes.size(), MSG_NOSIGNAL);
            if (length > 0) bytes.remove_prefix(static_cast<std::size_t>(length));
            return bytes.empty();
        });
        EXPECT_TRUE(sent);
    }

    /// Whether the client receives exactly these bytes next.
    testing::AssertionResult receives(const FileDescriptor& client, std::string_view expected) {
        std::string got;
        const bool whole = loop_.runUntil([&] {
            std::array<char, 4096> buffer;
            const auto wanted = std::min(buffer.size(), expected.size() - got.size());
            const ssize_t length = recv(client.number(), buffer.data(), wanted, 0);
            if (length > 0) got.append(buffer.data(), static_cast<std::size_t>(length));
            return got.size() == expected.size() || length == 0;
        });
        if (whole && got == expected) return testing::AssertionSuccess();
        return testing::AssertionFailure() << "received \"" << got.substr(0, 200) << "\"";
    }

    testing::AssertionResult isClosed(const FileDescriptor& client) {
        char byte = 0;
        ssize_t length = -1;
        const bool ended = loop_.runUntil([&] {
            length = recv(client.number(), &byte, 1, 0);
            return length >= 0 || errno != EAGAIN;
        });
        return ended && length <= 0 ? testing::AssertionSuccess() : testing::AssertionFailure() << "got " << byte;
    }

    void settle() {
        EXPECT_TRUE(loop_.runUntil([turns = 0]() mutable { return ++turns > 5; }));
    }

    ManualMainLoop loop_;
    TemporaryFolder folder_;
    std::string path_ = folder_.path("socket");
    std::shared_ptr<LineServer::Connection> held_;
    int closed_ = 0;
    LineServer server_{
        loop_,
        {.onRequest =
             [this](const std::shared_ptr<LineServer::Connection>& connection, std::string_view line) {
                 connection->onClose([this] { ++closed_; });
                 if (line == "hold") {
                     held_ = connection;
                 } else if (line == "stream") {
                     connection->beginStream();
                     connection->stream("1");
                     connection->stream("2");
                     held_ = connection;
                 } else {
                     connection->reply("<" + std::string(line) + ">");
                 }
             },
         .faultReply = [](LineServer::Fault fault) { return "fault " + std::to_string(static_cast<int>(fault)); }},
        {.requestSizeInBytes = 1000, .swallowedBytes = 20000, .unsentBytes = 200000, .connections = 3}};
};

TEST_F(LineServerTest, AnswersRequestsInOrderHoweverTheBytesArrive) {
    const auto client = connect();
    std::string many = "two\r\n\n";
    std::string answers = "<two>\n<>\n";
    for (const char byte : many)
        sendAll(client, {&byte, 1});
    EXPECT_TRUE(receives(client, answers));
    for (int index = 0; index < 5000; ++index) {
        many += std::to_string(index) + '\n';
        answers += '<' + std::to_string(index) + ">\n";
    }
    sendAll(client, many);
    EXPECT_TRUE(receives(client, answers));

    // What follows an open request waits for its answer.
    sendAll(client, "hold\nnext\n");
    settle();
    char early = 0;
    EXPECT_EQ(recv(client.number(), &early, 1, 0), -1);
    held_->reply("held");
    EXPECT_TRUE(receives(client, "held\n<next>\n"));
    held_->reply("a second answer to the same request goes nowhere");
    sendAll(client, "end\n");
    EXPECT_TRUE(receives(client, "<end>\n"));
}

TEST_F(LineServerTest, AnswersAClientThatClosedItsWritingSide) {
    const auto client = connect();
    sendAll(client, "hold\n");
    shutdown(client.number(), SHUT_WR);
    settle();
    held_->reply("late");
    EXPECT_TRUE(receives(client, "late\n"));
    EXPECT_TRUE(isClosed(client));
    EXPECT_EQ(server_.connectionCount(), 0U);

    // Also when it sent more than is handed out in a turn, and when it broke off within a line.
    const auto hasty = connect();
    std::string answers;
    for (int index = 0; index < 1000; ++index)
        answers += "<>\n";
    sendAll(hasty, std::string(1000, '\n') + "hold\nunfinished");
    shutdown(hasty.number(), SHUT_WR);
    EXPECT_TRUE(receives(hasty, answers));
    settle();
    held_->reply("late");
    EXPECT_TRUE(receives(hasty, "late\n"));
    EXPECT_TRUE(isClosed(hasty));
}

TEST_F(LineServerTest, RefusesLongLinesAndGoesOn) {
    const auto client = connect();
    sendAll(client, std::string(1000, 'a') + "\n" + std::string(1001, 'b') + "\nok\n");
    EXPECT_TRUE(receives(client, "<" + std::string(1000, 'a') + ">\nfault 0\n<ok>\n"));
    sendAll(client, std::string(15000, 'c') + "\nok\n");
    EXPECT_TRUE(receives(client, "fault 0\n<ok>\n"));

    const auto endless = connect();
    sendAll(endless, std::string(20001, 'd'));
    EXPECT_TRUE(receives(endless, "fault 0\n"));
    EXPECT_TRUE(isClosed(endless));
}

TEST_F(LineServerTest, DropsClientsThatKeepItWaiting) {
    const auto silent = connect();
    const auto halfway = connect();
    sendAll(halfway, "ok\nhal");
    EXPECT_TRUE(receives(halfway, "<ok>\n"));
    const auto streaming = connect();
    sendAll(streaming, "stream\n");
    EXPECT_TRUE(receives(streaming, "1\n2\n"));

    loop_.advance(9s);
    EXPECT_EQ(server_.connectionCount(), 3U);
    loop_.advance(2s);
    for (const FileDescriptor* late : {&silent, &halfway})
        EXPECT_TRUE(receives(*late, "fault 1\n") && isClosed(*late));
    loop_.advance(1h);
    EXPECT_EQ(server_.connectionCount(), 1U);  // one that listens may stay
    // A stream that is ended leaves its connection to the next request, with the usual patience.
    const int closedBefore = closed_;
    held_->stream("3");
    held_->reply("end");
    EXPECT_EQ(closed_, closedBefore + 1);
    held_->stream("late");
    sendAll(streaming, "ok\n");
    EXPECT_TRUE(receives(streaming, "3\nend\n<ok>\n"));
    loop_.advance(1h);
    EXPECT_TRUE(receives(streaming, "fault 1\n") && isClosed(streaming));
}

TEST_F(LineServerTest, RefusesTooManyClientsAndTellsWhenOneLeaves) {
    auto first = connect();
    const auto second = connect();
    const auto third = connect();
    const auto fourth = connect();
    EXPECT_TRUE(receives(fourth, "fault 2\n"));
    EXPECT_TRUE(isClosed(fourth));
    sendAll(first, "ok\n");
    EXPECT_TRUE(receives(first, "<ok>\n"));
    first.close();
    EXPECT_TRUE(loop_.runUntil([&] { return closed_ == 1 && server_.connectionCount() == 2; }));
}

TEST_F(LineServerTest, DropsAClientThatNeverReads) {
    const auto deaf = connect();
    const auto other = connect();
    sendAll(other, "ok\n");
    sendAll(deaf, "hold\n");
    ASSERT_TRUE(loop_.runUntil([&] { return held_ != nullptr; }));
    held_->beginStream();
    // Far more than the socket and the limit hold, with nobody reading.
    for (int line = 0; line < 1000; ++line)
        held_->stream(std::string(1000, 'x'));
    EXPECT_TRUE(loop_.runUntil([&] { return closed_ == 1; }));
    EXPECT_TRUE(receives(other, "<ok>\n"));
}

TEST_F(LineServerTest, AClientOfAServerThatDoesNothingGivesUp) {
    auto client = LineClient::connect(path_, 20ms);  // nobody serves the loop
    ASSERT_TRUE(client.has_value());
    EXPECT_EQ(client->request("ok").error().number, ETIMEDOUT);
    // Once the queue of connections is full, connecting ends too.
    std::vector<FileDescriptor> waiting;
    auto next = UnixSocket::connectTo(path_, 20ms);
    for (; next && waiting.size() < 200; next = UnixSocket::connectTo(path_, 20ms))
        waiting.push_back(std::move(*next));
    ASSERT_FALSE(next.has_value());
    EXPECT_EQ(next.error().number, ETIMEDOUT);
}

}  // namespace
}  // namespace orvane
