#pragma once

#include <memory>

#include "Platform/BackgroundPool.h"

namespace orvane {

/// Runs tasks one after another in the order they were submitted, on a pool that must outlive it. The last word on
/// exceptions is the pool's.
class SerialQueue {
 public:
    explicit SerialQueue(BackgroundPool& pool);
    SerialQueue(const SerialQueue&) = delete;
    SerialQueue& operator=(const SerialQueue&) = delete;
    /// Flushes.
    ~SerialQueue();

    /// From any thread.
    void submit(Task task);

    /// Blocks until everything submitted before is done. What has not begun is run on the calling thread, so this
    /// needs no free thread of the pool and at most waits for the one task that runs already. Not to be called from
    /// one of the queue's own tasks, which would wait for itself.
    void flush();

 private:
    struct State;
    std::shared_ptr<State> state_;
};

}  // namespace orvane
