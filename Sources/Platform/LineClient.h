#pragma once

#include <expected>
#include <string>
#include <string_view>

#include "Platform/FileDescriptor.h"
#include "Platform/SystemError.h"

namespace orvane {

/// The blocking client of a `LineServer`, for programs that ask one thing and end.
class LineClient {
 public:
    static std::expected<LineClient, SystemError> connect(const std::string& socketPath);

    /// Sends a line (the end is added) and waits for the next line.
    std::expected<std::string, SystemError> request(std::string_view line);

    /// The next line the server sends; error number 0 when it closed the connection.
    std::expected<std::string, SystemError> readLine();

 private:
    explicit LineClient(FileDescriptor socket) : socket_(std::move(socket)) {}

    std::expected<void, SystemError> writeAll(std::string_view bytes) const;

    FileDescriptor socket_;
    std::string received_;
};

}  // namespace orvane
