#include "TerminalEmulator/HeadlessTerminal.h"

#include <utility>

namespace orvane {

void HeadlessTerminal::Timer::start(std::chrono::duration<double> delay, std::function<void()> task) {
    registration_ = loop_.after(std::chrono::duration_cast<Duration>(delay), std::move(task));
}

}  // namespace orvane
