#pragma once

#include <chrono>
#include <functional>

#include "Platform/Registration.h"

namespace orvane {

using Task = std::move_only_function<void()>;

/// Monotonic time; says nothing about the time of day.
using Instant = std::chrono::time_point<std::chrono::steady_clock, std::chrono::nanoseconds>;
using Duration = std::chrono::nanoseconds;
using WallTime = std::chrono::sys_time<std::chrono::microseconds>;

enum class Readiness { readable, writable };

/// The one loop that all state of the program belongs to. Everything is called on its thread, `post` alone may be
/// called from any. Tasks run one after another and never inside the call that registers them.
class MainLoop {
 public:
    MainLoop() = default;
    MainLoop(const MainLoop&) = delete;
    MainLoop& operator=(const MainLoop&) = delete;
    virtual ~MainLoop() = default;

    virtual Instant now() const = 0;
    virtual WallTime wallTime() const = 0;

    /// Runs the task in a later turn; tasks run in the order they were posted. From any thread.
    virtual void post(Task task) = 0;

    /// Runs the task once, `delay` from now or up to `tolerance` later: the loop joins timers whose time allows it
    /// into one wake-up. The registration must be kept; without it the timer is gone.
    Registration after(Duration delay, Task task, Duration tolerance = {}) {
        return addTimer(delay, tolerance, Repeat::never, std::move(task));
    }

    /// Runs the task every `interval`, first one interval from now. Each run may come up to `tolerance` late without
    /// moving the later ones; runs that were missed altogether (a suspended machine) are not made up for.
    Registration every(Duration interval, Duration tolerance, Task task) {
        return addTimer(interval, tolerance, Repeat::forever, std::move(task));
    }

    /// Runs the task in each turn in which the descriptor is ready, and also at its end of file or error. The caller
    /// keeps the descriptor open until the registration is gone.
    virtual Registration watch(int descriptor, Readiness readiness, Task task) = 0;

 protected:
    enum class Repeat { never, forever };

    virtual Registration addTimer(Duration delay, Duration tolerance, Repeat repeat, Task task) = 0;
};

}  // namespace orvane
