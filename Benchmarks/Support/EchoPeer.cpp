#include "Support/EchoPeer.h"

#include <poll.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>

#include "Platform/UnixSocket.h"

namespace orvane::benchmark {

namespace {

/// The child: takes one connection and answers until it ends. A request is shorter than the buffer and nobody sends a
/// second one before the reply, so what ends with a line end is one request.
[[noreturn]] void answer(int listener, const std::string& reply) {
    pollfd waiting{.fd = listener, .events = POLLIN, .revents = 0};
    poll(&waiting, 1, -1);
    const int socket = accept4(listener, nullptr, nullptr, SOCK_CLOEXEC);
    std::array<char, 4096> buffer;
    while (true) {
        const ssize_t length = recv(socket, buffer.data(), buffer.size(), 0);
        if (length <= 0) _exit(0);
        if (buffer[static_cast<std::size_t>(length) - 1] != '\n') continue;
        if (send(socket, reply.data(), reply.size(), MSG_NOSIGNAL) < 0) _exit(1);
    }
}

}  // namespace

Measured<std::unique_ptr<EchoPeer>> EchoPeer::start(const std::string& path, const std::string& reply) {
    const auto listener = UnixSocket::listenAt(path);
    if (!listener) return Failure(listener.error().message());
    const std::string line = reply + '\n';
    const pid_t pid = fork();
    if (pid < 0) return Failure(SystemError::last("fork").message());
    if (pid == 0) answer(listener->number(), line);
    auto client = LineClient::connect(path);
    if (!client) {
        kill(pid, SIGKILL);
        waitpid(pid, nullptr, 0);
        return Failure(client.error().message());
    }
    return std::unique_ptr<EchoPeer>(new EchoPeer(pid, std::move(*client)));
}

EchoPeer::~EchoPeer() {
    client_.reset();
    waitpid(pid_, nullptr, 0);
}

}  // namespace orvane::benchmark
