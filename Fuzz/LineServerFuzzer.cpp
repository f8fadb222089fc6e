#include <sys/socket.h>

#include <array>

#include "Fuzzing.h"
#include "Platform/LineServer.h"
#include "Platform/ManualMainLoop.h"
#include "Platform/UnixSocket.h"
#include "Support/TemporaryFolder.h"

using namespace orvane;
using fuzzing::require;

namespace {

constexpr std::size_t longestRequest = 32;

/// What a server must answer that repeats each request and says "!" to one that is too long.
std::string expectedReplies(std::string_view input) {
    std::string replies;
    for (std::size_t end = 0; (end = input.find('\n')) != std::string_view::npos; input.remove_prefix(end + 1)) {
        std::string_view line = input.substr(0, end);
        const bool isTooLong = line.size() > longestRequest;
        if (line.ends_with('\r')) line.remove_suffix(1);
        replies += isTooLong ? "!" : std::string(line);
        replies += '\n';
    }
    return replies;
}

/// Appends what has come. A client that did not read would fill the socket and be waited for.
void receive(int client, std::string& replies) {
    std::array<char, 4096> buffer;
    for (ssize_t length = 0; (length = recv(client, buffer.data(), buffer.size(), MSG_DONTWAIT)) > 0;)
        replies.append(buffer.data(), static_cast<std::size_t>(length));
}

}  // namespace

/// The first byte says into what pieces the client cuts the rest.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const TemporaryFolder folder;
    static const std::string path = folder.path("socket");
    if (size == 0) return 0;
    ManualMainLoop loop;
    LineServer server(loop,
                      {.onRequest = [](const auto& connection, std::string_view line) { connection->reply(line); },
                       .faultReply = [](LineServer::Fault) { return "!"; }},
                      {.requestSizeInBytes = longestRequest});
    server.serve(*UnixSocket::listenAt(path));
    const FileDescriptor client = *UnixSocket::connectTo(path);
    require(loop.runUntil([&] { return server.connectionCount() == 1; }), "a client is taken");

    const std::string_view input = fuzzing::asText(data + 1, size - 1);
    std::string replies;
    std::size_t length = 1;
    for (std::size_t at = 0; at < input.size(); at += length) {
        length = std::min<std::size_t>(1 + (data[0] * (at + 1)) % 61, input.size() - at);
        require(send(client.number(), input.data() + at, length, 0) == static_cast<ssize_t>(length),
                "a client can send");
        // One turn, in which the piece is there; the socket is served once before the condition holds.
        require(loop.runUntil([turns = 0]() mutable { return turns++ > 0; }), "a turn ends");
    }
    shutdown(client.number(), SHUT_WR);
    const auto isLetGo = [&] {
        receive(client.number(), replies);
        return server.connectionCount() == 0;
    };
    require(loop.runUntil(isLetGo), "a client that is done is let go");
    receive(client.number(), replies);
    require(replies == expectedReplies(input), "each line has its reply, however it came");
    return 0;
}
