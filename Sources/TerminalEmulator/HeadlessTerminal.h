#pragma once

#include "Platform/MainLoop.h"
#include "TerminalEmulator/Terminal.h"
#include "TerminalEmulator/TerminalTimer.h"

namespace orvane {

/// A terminal with no view, whose timer is on the main loop. The loop and the delegate must outlive it.
class HeadlessTerminal {
 public:
    HeadlessTerminal(MainLoop& loop, TerminalDelegate& delegate, TerminalOptions options = {})
        : timer_(loop), terminal(delegate, std::move(options), &timer_) {}

 private:
    class Timer final : public TerminalTimer {
     public:
        explicit Timer(MainLoop& loop) : loop_(loop) {}
        void start(std::chrono::duration<double> delay, std::function<void()> task) override;
        void stop() override { registration_ = {}; }

     private:
        MainLoop& loop_;
        Registration registration_;
    };

    Timer timer_;

 public:
    Terminal terminal;
};

}  // namespace orvane
