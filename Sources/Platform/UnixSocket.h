#pragma once

#include <chrono>
#include <expected>
#include <string>

#include "Platform/FileDescriptor.h"
#include "Platform/SystemError.h"

/// Stream sockets in the file system. All descriptors are close-on-exec.
namespace orvane::UnixSocket {

/// Longest path that the system takes for a socket, in bytes.
inline constexpr std::size_t longestPath = 107;

/// A non-blocking socket that listens at the path, which only its owner may connect to. What stands there already is
/// replaced; a path that is too long is an error.
std::expected<FileDescriptor, SystemError> listenAt(const std::string& path);

/// A blocking connection; the error number is ENOENT or ECONNREFUSED when nobody listens, and ETIMEDOUT when whoever
/// listens takes no connections for so long. The patience goes for each later write too; 0 has no end.
std::expected<FileDescriptor, SystemError> connectTo(const std::string& path, std::chrono::milliseconds patience = {});

/// Whether the process at the other end runs as our user.
bool peerIsOurUser(int socket);

}  // namespace orvane::UnixSocket
