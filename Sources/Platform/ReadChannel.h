#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "Platform/FileDescriptor.h"
#include "Platform/MainLoop.h"

namespace orvane {

/// The bytes of a descriptor that may bring more than anybody can take: read on the loop of one thread, delivered on
/// that of another in slices that leave it free. When too much waits, reading pauses, and whoever writes has to wait.
/// As long as it brings little, such as the echo of keys, it is read on the loop that it delivers on, which saves the
/// way through the other thread.
///
/// Used on the loop that it delivers on. Destroying it closes the descriptor; nothing is called any more.
class ReadChannel {
 public:
    struct Limits {
        std::size_t readSize = 0x20000;                     ///< bytes of one read
        std::size_t highWater = 0x400000;                   ///< undelivered bytes at which reading pauses
        std::size_t lowWater = 0x100000;                    ///< and at which it goes on
        std::size_t flushThreshold = 32;                    ///< delivered pieces that may stay at the head of the queue
        Duration timeSlice = std::chrono::milliseconds(1);  ///< of calls in one turn: so long a key may have to wait
        /// Behind the last read that brought much, before it is read on the other loop again.
        Duration quietTime = std::chrono::milliseconds(100);
    };

    /// They may destroy the channel.
    struct Callbacks {
        std::function<void(std::string_view)> onData;
        std::function<void()> onEnd;  ///< no more bytes will come; after all of them
    };

    /// The descriptor must not block. Reading begins at once, and with a folder also logging.
    ReadChannel(MainLoop& dispatch, MainLoop& reader, FileDescriptor descriptor, const Limits& limits,
                Callbacks callbacks, std::optional<std::string> loggingDirectory = {});
    ReadChannel(const ReadChannel&) = delete;
    ReadChannel& operator=(const ReadChannel&) = delete;
    ~ReadChannel();

    int descriptor() const;
    /// Reads what is there at this moment, whatever waits already, and runs the task behind all of it.
    void whenDrained(std::function<void()> task);
    /// Each piece also goes to a file "log-N" in the folder, N counting from 0.
    void setLogging(std::optional<std::string> directory);

 private:
    struct State;
    std::shared_ptr<State> state_;
};

}  // namespace orvane
