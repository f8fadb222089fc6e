#pragma once

#include <chrono>
#include <expected>
#include <optional>
#include <span>
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

    /// Sends a line; the end is added. The descriptors go along with it and stay the caller's too.
    std::expected<void, SystemError> send(std::string_view line, std::span<const int> descriptors = {}) const;

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

    /// The next line if it is there, without waiting; else as `readLine`. More may be there after it.
    std::expected<std::optional<std::string>, SystemError> lineIfThere();

    /// To be polled: readable when `lineIfThere` may have something new.
    int descriptor() const { return socket_.number(); }

 private:
    LineClient(FileDescriptor socket, std::chrono::milliseconds patience)
        : socket_(std::move(socket)), patience_(patience) {}

    std::expected<std::string, SystemError> readLine(int pollLimit);
    std::optional<std::string> takeLine();
    std::expected<void, SystemError> receive(int flags);

    FileDescriptor socket_;
    std::chrono::milliseconds patience_;
    std::string received_;
    std::size_t searched_ = 0;  ///< bytes of it that hold no line end
};

}  // namespace orvane
