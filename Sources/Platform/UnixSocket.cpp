#include "Platform/UnixSocket.h"

#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>

#include <cerrno>
#include <cstring>

namespace orvane::UnixSocket {

namespace {

constexpr int waitingConnections = 64;

std::expected<sockaddr_un, SystemError> addressOf(const std::string& path) {
    sockaddr_un address{};
    static_assert(sizeof address.sun_path == longestPath + 1);
    if (path.size() > longestPath) return std::unexpected(SystemError::of(ENAMETOOLONG, "use the socket", path));
    address.sun_family = AF_UNIX;
    std::memcpy(address.sun_path, path.c_str(), path.size() + 1);
    return address;
}

const sockaddr* generic(const sockaddr_un& address) {
    return reinterpret_cast<const sockaddr*>(&address);
}

}  // namespace

std::expected<FileDescriptor, SystemError> listenAt(const std::string& path) {
    const auto address = addressOf(path);
    if (!address) return std::unexpected(address.error());
    FileDescriptor listener(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
    if (!listener.isOpen()) return std::unexpected(SystemError::last("make a socket"));
    if (unlink(path.c_str()) != 0 && errno != ENOENT) return std::unexpected(SystemError::last("replace", path));
    if (bind(listener.number(), generic(*address), sizeof *address) != 0 ||
        chmod(path.c_str(), S_IRUSR | S_IWUSR) != 0 || listen(listener.number(), waitingConnections) != 0) {
        return std::unexpected(SystemError::last("listen at", path));
    }
    return listener;
}

std::expected<FileDescriptor, SystemError> connectTo(const std::string& path, std::chrono::milliseconds patience) {
    const auto address = addressOf(path);
    if (!address) return std::unexpected(address.error());
    FileDescriptor connection(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
    if (!connection.isOpen()) return std::unexpected(SystemError::last("make a socket"));
    const auto seconds = std::chrono::floor<std::chrono::seconds>(patience);
    const timeval limit{.tv_sec = seconds.count(), .tv_usec = std::chrono::microseconds(patience - seconds).count()};
    if (setsockopt(connection.number(), SOL_SOCKET, SO_SNDTIMEO, &limit, sizeof limit) != 0) {
        return std::unexpected(SystemError::last("make a socket"));
    }
    while (connect(connection.number(), generic(*address), sizeof *address) != 0) {
        if (errno == EAGAIN) return std::unexpected(SystemError::of(ETIMEDOUT, "connect to", path));
        if (errno != EINTR) return std::unexpected(SystemError::last("connect to", path));
    }
    return connection;
}

bool peerIsOurUser(int socket) {
    ucred credentials{};
    socklen_t length = sizeof credentials;
    return getsockopt(socket, SOL_SOCKET, SO_PEERCRED, &credentials, &length) == 0 && credentials.uid == geteuid();
}

}  // namespace orvane::UnixSocket
