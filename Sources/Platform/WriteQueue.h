#pragma once

#include <cstddef>
#include <deque>
#include <expected>
#include <string>
#include <string_view>

#include "Platform/MainLoop.h"
#include "Platform/SystemError.h"

namespace orvane {

/// Bytes on their way into a descriptor that does not block and that others read, sooner or later. On its loop only.
class WriteQueue {
 public:
    /// The descriptor is not its own and outlives it. Of what waits at most `limit` bytes are held.
    WriteQueue(MainLoop& loop, int descriptor, std::size_t limit)
        : loop_(loop), descriptor_(descriptor), limit_(limit) {}

    /// Sends now what can be sent, and the rest as there is room. ENOBUFS: too much waits, nothing of this is taken.
    /// Any other error is that of the write, and all that waited is dropped.
    [[nodiscard]] std::expected<void, SystemError> write(std::string_view bytes);

 private:
    std::expected<void, SystemError> send();

    MainLoop& loop_;
    int descriptor_;
    std::size_t limit_;
    std::deque<std::string> unsent_;
    std::size_t unsentSize_ = 0;
    std::size_t sentOfFirst_ = 0;
    Registration room_;
};

}  // namespace orvane
