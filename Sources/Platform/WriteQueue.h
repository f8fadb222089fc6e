#pragma once

#include <cstddef>
#include <deque>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "Platform/MainLoop.h"
#include "Platform/SystemError.h"

namespace orvane {

/// Bytes on their way into a descriptor that does not block and that others read, sooner or later. On its loop only.
class WriteQueue {
 public:
    /// What became of one write.
    struct Completion {
        std::size_t written = 0;
        std::optional<SystemError> error;
    };
    /// Must not destroy the queue.
    using Callback = std::move_only_function<void(const Completion&)>;

    /// The descriptor is not its own and outlives it. Of what waits at most `limit` bytes are held.
    WriteQueue(MainLoop& loop, int descriptor, std::size_t limit)
        : loop_(loop), descriptor_(descriptor), limit_(limit) {}

    /// Sends now what can be sent, and the rest as there is room. `onDone` is called once, maybe within this call, and
    /// not any more when the queue is destroyed. ENOBUFS: too much waits, and nothing of this is taken. Any other error
    /// is that of the system, and ends all writes that wait.
    void write(std::string_view bytes, Callback onDone);

 private:
    struct Unsent {
        std::string bytes;
        std::size_t sent = 0;
        Callback onDone;
    };

    void send();
    /// Takes the first write out and tells what became of it.
    void complete(std::optional<SystemError> error);

    MainLoop& loop_;
    int descriptor_;
    std::size_t limit_;
    std::deque<Unsent> unsent_;
    std::size_t unsentSize_ = 0;
    Registration room_;
};

}  // namespace orvane
