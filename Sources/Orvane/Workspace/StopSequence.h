#pragma once

#include <functional>
#include <memory>
#include <vector>

#include "Orvane/Workspace/AppStore.h"
#include "Platform/MainLoop.h"

namespace orvane {

/// Stops everything the store started before the process ends: asks first, waits at most a second, and then ends what
/// is left. Nothing blocks; the loop stays live all the while.
class StopSequence {
 public:
    /// The loop outlives the sequence.
    StopSequence(MainLoop& loop, std::shared_ptr<AppStore> store);

    /// Calls `onStopped` once when nothing is left to wait for. A second start changes nothing.
    void start(std::function<void()> onStopped);
    bool hasStarted() const { return static_cast<bool>(onStopped_); }

 private:
    void poll();
    void killAndFinish();

    MainLoop& loop_;
    std::shared_ptr<AppStore> store_;
    /// Sessions that were closed shortly before still count; the store no longer knows them.
    std::vector<std::shared_ptr<SessionController>> stopping_;
    std::function<void()> onStopped_;
    Instant deadline_{};
    Registration timer_;
};

}  // namespace orvane
