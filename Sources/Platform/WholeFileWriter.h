#pragma once

#include <sys/types.h>

#include <expected>
#include <functional>
#include <memory>
#include <string>

#include "Platform/MainLoop.h"
#include "Platform/SerialQueue.h"
#include "Platform/SystemError.h"

namespace orvane {

/// Keeps the newest content of one file written behind, with `writeWholeFile` on a serial queue. Used on the main
/// thread; loop and queue must outlive it.
class WholeFileWriter {
 public:
    using ErrorCallback = std::move_only_function<void(const SystemError&)>;

    /// `onError` runs on the loop when a write fails, and again only when the failure becomes another one or comes
    /// back after a success. The content that failed is kept and tried again by the next `write` or `flush`.
    WholeFileWriter(MainLoop& loop, SerialQueue& queue, std::string path, ErrorCallback onError, mode_t mode = 0600);
    WholeFileWriter(const WholeFileWriter&) = delete;
    WholeFileWriter& operator=(const WholeFileWriter&) = delete;
    /// Flushes. A failure that nobody can be told of any more goes to standard error.
    ~WholeFileWriter();

    /// Returns at once. Content that waits to be written is replaced by this.
    void write(std::string bytes);

    /// Blocks until the newest content is on the disk or has failed, which is told here too.
    [[nodiscard]] std::expected<void, SystemError> flush();

 private:
    struct State;
    std::shared_ptr<State> state_;
    SerialQueue& queue_;
    std::shared_ptr<ErrorCallback> onError_;  ///< called and destroyed on the main thread only
};

}  // namespace orvane
