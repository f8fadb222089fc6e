#include "Platform/LineClient.h"

#include <poll.h>
#include <sys/socket.h>

#include <array>
#include <cerrno>

#include "Platform/UnixSocket.h"

namespace orvane {

std::expected<LineClient, SystemError> LineClient::connect(const std::string& socketPath,
                                                           std::chrono::milliseconds patience) {
    auto socket = UnixSocket::connectTo(socketPath, patience);
    if (!socket) return std::unexpected(socket.error());
    return LineClient(std::move(*socket), patience);
}

std::expected<std::string, SystemError> LineClient::request(std::string_view line, Wait wait) {
    if (auto sent = send(line); !sent) return std::unexpected(sent.error());
    return readLine(wait == Wait::endless ? -1 : static_cast<int>(patience_.count()));
}

std::expected<std::string, SystemError> LineClient::readLine() {
    return readLine(-1);
}

/// `pollLimit` as poll(2) takes it: the milliseconds to wait for the next bytes, negative without an end.
std::expected<std::string, SystemError> LineClient::readLine(int pollLimit) {
    std::size_t searched = 0;
    while (true) {
        const auto end = received_.find('\n', searched);
        if (end != std::string::npos) {
            std::string line = received_.substr(0, end);
            received_.erase(0, end + 1);
            return line;
        }
        searched = received_.size();
        pollfd ready{.fd = socket_.number(), .events = POLLIN, .revents = 0};
        const int count = poll(&ready, 1, pollLimit);
        if (count == 0) return std::unexpected(SystemError::of(ETIMEDOUT, "read from the host"));
        if (count < 0) continue;
        std::array<char, 16384> buffer;
        const ssize_t length = recv(socket_.number(), buffer.data(), buffer.size(), 0);
        if (length > 0) {
            received_.append(buffer.data(), static_cast<std::size_t>(length));
        } else if (length == 0) {
            return std::unexpected(SystemError::of(0, "the host closed the connection"));
        } else if (errno != EINTR) {
            return std::unexpected(SystemError::last("read from the host"));
        }
    }
}

std::expected<void, SystemError> LineClient::send(std::string_view line) const {
    const std::string text = std::string(line) + '\n';
    std::string_view bytes = text;
    while (!bytes.empty()) {
        const ssize_t length = ::send(socket_.number(), bytes.data(), bytes.size(), MSG_NOSIGNAL);
        if (length >= 0) {
            bytes.remove_prefix(static_cast<std::size_t>(length));
        } else if (errno == EAGAIN) {
            return std::unexpected(SystemError::of(ETIMEDOUT, "write to the host"));
        } else if (errno != EINTR) {
            return std::unexpected(SystemError::last("write to the host"));
        }
    }
    return {};
}

}  // namespace orvane
