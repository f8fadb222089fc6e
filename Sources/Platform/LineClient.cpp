#include "Platform/LineClient.h"

#include <poll.h>
#include <sys/socket.h>

#include <array>
#include <cerrno>
#include <utility>

#include "Platform/DescriptorPassing.h"
#include "Platform/Uninterrupted.h"
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

std::expected<std::optional<std::string>, SystemError> LineClient::lineIfThere() {
    while (true) {
        if (auto line = takeLine()) return line;
        if (auto got = receive(MSG_DONTWAIT); !got) {
            if (got.error().number == EAGAIN) return std::nullopt;
            return std::unexpected(got.error());
        }
    }
}

/// `pollLimit` as poll(2) takes it: the milliseconds to wait for the next bytes, negative without an end.
std::expected<std::string, SystemError> LineClient::readLine(int pollLimit) {
    while (true) {
        if (auto line = takeLine()) return *std::move(line);
        pollfd ready{.fd = socket_.number(), .events = POLLIN, .revents = 0};
        const int count = poll(&ready, 1, pollLimit);
        if (count == 0) return std::unexpected(SystemError::of(ETIMEDOUT, "read from the host"));
        if (count < 0) continue;
        if (auto got = receive(0); !got) return std::unexpected(got.error());
    }
}

/// A line that has come whole.
std::optional<std::string> LineClient::takeLine() {
    const auto end = received_.find('\n', searched_);
    searched_ = end == std::string::npos ? received_.size() : 0;
    if (end == std::string::npos) return std::nullopt;
    std::string line = received_.substr(0, end);
    received_.erase(0, end + 1);
    return line;
}

std::expected<void, SystemError> LineClient::receive(int flags) {
    std::array<char, 16384> buffer;
    const ssize_t length = uninterrupted([&] { return recv(socket_.number(), buffer.data(), buffer.size(), flags); });
    if (length < 0) return std::unexpected(SystemError::last("read from the host"));
    if (length == 0) return std::unexpected(SystemError::of(0, "the host closed the connection"));
    received_.append(buffer.data(), static_cast<std::size_t>(length));
    return {};
}

std::expected<void, SystemError> LineClient::send(std::string_view line, std::span<const int> descriptors) const {
    const std::string text = std::string(line) + '\n';
    std::string_view bytes = text;
    while (!bytes.empty()) {
        const ssize_t length = DescriptorPassing::send(socket_.number(), bytes, descriptors);
        if (length >= 0) {
            bytes.remove_prefix(static_cast<std::size_t>(length));
            descriptors = {};
        } else if (errno == EAGAIN) {
            return std::unexpected(SystemError::of(ETIMEDOUT, "write to the host"));
        } else if (errno != EINTR) {
            return std::unexpected(SystemError::last("write to the host"));
        }
    }
    return {};
}

}  // namespace orvane
