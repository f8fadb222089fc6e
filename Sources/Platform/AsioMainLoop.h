#pragma once

#include <memory>

#include "Platform/MainLoop.h"

namespace orvane {

/// The main loop of the running program, on Boost.Asio's reactor. It sleeps whenever nothing is due.
class AsioMainLoop final : public MainLoop {
 public:
    AsioMainLoop();
    ~AsioMainLoop() override;

    Instant now() const override;
    WallTime wallTime() const override;
    void post(Task task) override;
    Registration watch(int descriptor, Readiness readiness, Task task) override;

    /// Serves the loop on the calling thread until `stop`.
    void run();
    /// Ends `run` after the current task.
    void stop();

 private:
    Registration addTimer(Duration delay, Duration tolerance, Repeat repeat, Task task) override;

    struct Implementation;
    std::shared_ptr<Implementation> implementation_;
};

}  // namespace orvane
