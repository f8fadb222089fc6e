#pragma once

#include <deque>
#include <list>
#include <memory>
#include <mutex>

#include "Platform/MainLoop.h"
#include "Platform/TimerQueue.h"

namespace orvane {

/// A main loop for tests: its clock moves only when told to, so a rule of 900 seconds is tested in a microsecond.
/// Descriptors are real; they are looked at in `runUntil`.
class ManualMainLoop final : public MainLoop {
 public:
    ManualMainLoop();

    Instant now() const override { return now_; }
    WallTime wallTime() const override;
    void post(Task task) override;
    Registration watch(int descriptor, Readiness readiness, Task task) override;

    /// Runs one turn: the tasks that stand in the queue now. Those they post wait for the next turn.
    void runTurn();
    /// Runs turns until nothing is posted any more.
    void runPosted();
    /// Moves the clock forward, firing every timer at the moment it is due and running what is posted in between.
    void advance(Duration span);
    /// Runs turns and serves ready descriptors, on a clock that stands still, until the condition holds. False when
    /// `realLimit` of real time passed first.
    [[nodiscard]] bool runUntil(const std::function<bool()>& condition,
                                std::chrono::milliseconds realLimit = std::chrono::seconds(20));

 private:
    struct Watch {
        int descriptor;
        Readiness readiness;
        Task task;
        bool cancelled = false;
    };

    Registration addTimer(Duration delay, Duration tolerance, Repeat repeat, Task task) override;
    void serveDescriptors(std::chrono::milliseconds wait);

    Instant now_{};
    std::shared_ptr<TimerQueue> timers_;
    std::shared_ptr<std::list<std::shared_ptr<Watch>>> watches_;
    std::mutex mutex_;  ///< guards `posted_`
    std::deque<Task> posted_;
};

}  // namespace orvane
