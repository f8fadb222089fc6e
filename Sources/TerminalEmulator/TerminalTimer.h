#pragma once

#include <chrono>
#include <functional>

namespace orvane {

/// The one clock a terminal needs: how it ends a synchronized output that its program has forgotten.
class TerminalTimer {
 public:
    virtual ~TerminalTimer() = default;

    /// Calls `task` once after `delay`, on the thread that feeds the terminal, unless stopped or started anew.
    virtual void start(std::chrono::duration<double> delay, std::function<void()> task) = 0;
    virtual void stop() = 0;
};

}  // namespace orvane
