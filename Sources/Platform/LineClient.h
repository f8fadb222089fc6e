#pragma once

#include <chrono>
#include <expected>
#include <string>
#include <string_view>

#include "Platform/FileDescriptor.h"
#include "Platform/SystemError.h"

namespace orvane {

/// The blocking client of a `LineServer`, for programs that ask one thing and end.
class LineClient {
 public:
    /// How long a server that does nothing (a stopped process) is waited for.
    static constexpr std::chrono::milliseconds defaultPatience = std::chrono::seconds(30);

    static std::expected<LineClient, SystemError> connect(const std::string& socketPath,
                                                          std::chrono::milliseconds patience = defaultPatience);

    /// Sends a line; the end is added.
    std::expected<void, SystemError> send(std::string_view line) const;

    enum class Wait {
        patient,  ///< while the server does something
        endless,
    };

    /// Sends a line and waits for the next line. The error number is ETIMEDOUT when the server does
    /// nothing for as long as the patience lasts; ECONNRESET or EPIPE when it ended before it read the line, which
    /// therefore had no effect; else as for `readLine`.
    std::expected<std::string, SystemError> request(std::string_view line, Wait wait = Wait::patient);

    /// The next line the server sends, however long it takes; error number 0 when it closed the connection.
    std::expected<std::string, SystemError> readLine();

 private:
    LineClient(FileDescriptor socket, std::chrono::milliseconds patience)
        : socket_(std::move(socket)), patience_(patience) {}

    std::expected<std::string, SystemError> readLine(int pollLimit);
    FileDescriptor socket_;
    std::chrono::milliseconds patience_;
    std::string received_;
};

}  // namespace orvane
