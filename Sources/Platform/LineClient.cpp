#include "Platform/LineClient.h"

#include <sys/socket.h>

#include <array>
#include <cerrno>

#include "Platform/UnixSocket.h"

namespace orvane {

std::expected<LineClient, SystemError> LineClient::connect(const std::string& socketPath) {
    auto socket = UnixSocket::connectTo(socketPath);
    if (!socket) return std::unexpected(socket.error());
    return LineClient(std::move(*socket));
}

std::expected<std::string, SystemError> LineClient::request(std::string_view line) {
    std::string bytes(line);
    bytes += '\n';
    if (auto written = writeAll(bytes); !written) return std::unexpected(written.error());
    return readLine();
}

std::expected<std::string, SystemError> LineClient::readLine() {
    std::size_t searched = 0;
    while (true) {
        const auto end = received_.find('\n', searched);
        if (end != std::string::npos) {
            std::string line = received_.substr(0, end);
            received_.erase(0, end + 1);
            return line;
        }
        searched = received_.size();
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

std::expected<void, SystemError> LineClient::writeAll(std::string_view bytes) const {
    while (!bytes.empty()) {
        const ssize_t length = send(socket_.number(), bytes.data(), bytes.size(), MSG_NOSIGNAL);
        if (length >= 0) {
            bytes.remove_prefix(static_cast<std::size_t>(length));
        } else if (errno != EINTR) {
            return std::unexpected(SystemError::last("write to the host"));
        }
    }
    return {};
}

}  // namespace orvane
