#include "Platform/WholeFileWriter.h"

#include <mutex>
#include <optional>
#include <utility>

#include "Platform/Files.h"
#include "Platform/StandardError.h"

namespace orvane {

struct WholeFileWriter::State : std::enable_shared_from_this<State> {
    MainLoop& loop;
    const std::string path;
    const mode_t mode;
    const std::weak_ptr<ErrorCallback> onError;
    std::mutex mutex;                   ///< guards all below
    std::optional<std::string> newest;  ///< not on the disk yet
    std::optional<SystemError> error;   ///< of the last write
    bool isScheduled = false;

    State(MainLoop& itsLoop, std::string itsPath, mode_t itsMode, std::weak_ptr<ErrorCallback> callback)
        : loop(itsLoop), path(std::move(itsPath)), mode(itsMode), onError(std::move(callback)) {}

    void schedule(SerialQueue& queue) {
        {
            const std::lock_guard lock(mutex);
            if (!newest || std::exchange(isScheduled, true)) return;
        }
        queue.submit([self = shared_from_this()] { self->writeNewest(); });
    }

    /// On the queue.
    void writeNewest() {
        std::string bytes;
        {
            const std::lock_guard lock(mutex);
            isScheduled = false;
            bytes = std::exchange(newest, std::nullopt).value_or(std::string());
        }
        const auto written = writeWholeFile(path, bytes, mode);
        const std::lock_guard lock(mutex);
        if (written) {
            error.reset();
            return;
        }
        if (!newest) newest = std::move(bytes);
        if (error == written.error()) return;
        error = written.error();
        loop.post([weak = onError, failure = written.error()] {
            const auto callback = weak.lock();
            if (callback && *callback) (*callback)(failure);
        });
    }
};

WholeFileWriter::WholeFileWriter(MainLoop& loop, SerialQueue& queue, std::string path, ErrorCallback onError,
                                 mode_t mode)
    : queue_(queue), onError_(std::make_shared<ErrorCallback>(std::move(onError))) {
    state_ = std::make_shared<State>(loop, std::move(path), mode, onError_);
}

WholeFileWriter::~WholeFileWriter() {
    if (const auto flushed = flush(); !flushed) {
        reportOnStandardError("not saved", flushed.error().message().c_str());
    }
}

void WholeFileWriter::write(std::string bytes) {
    {
        const std::lock_guard lock(state_->mutex);
        state_->newest = std::move(bytes);
    }
    state_->schedule(queue_);
}

std::expected<void, SystemError> WholeFileWriter::flush() {
    state_->schedule(queue_);
    queue_.flush();
    const std::lock_guard lock(state_->mutex);
    if (const auto& error = state_->error; error) return std::unexpected(*error);
    return {};
}

}  // namespace orvane
