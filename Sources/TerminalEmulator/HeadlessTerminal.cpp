#include "TerminalEmulator/HeadlessTerminal.h"

#include <utility>

namespace orvane {

namespace {

constexpr unsigned short pixelsOfNoView = 16;

}  // namespace

void HeadlessTerminal::Timer::start(std::chrono::duration<double> delay, std::function<void()> task) {
    registration_ = loop_.after(std::chrono::duration_cast<Duration>(delay), std::move(task));
}

HeadlessTerminal::HeadlessTerminal(MainLoop& dispatch, MainLoop& reader, TerminalOptions options,
                                   std::function<void(std::optional<int> exitCode)> atEnd)
    : timer_(dispatch),
      terminal(*this, std::move(options), &timer_),
      process(dispatch, reader, *this),
      onEnd(std::move(atEnd)) {}

void HeadlessTerminal::changeScrollback(std::optional<int> lines) {
    terminal.changeScrollback(lines.value_or(0));
    terminal.refresh(0, 0);
    terminal.refresh(terminal.rows() - 1, terminal.rows() - 1);
}

void HeadlessTerminal::sizeChanged(int /*cols*/, int /*rows*/) {
    process.setWindowSize(getWindowSize());
}

WindowSize HeadlessTerminal::getWindowSize() {
    return {.rows = static_cast<unsigned short>(terminal.rows()),
            .cols = static_cast<unsigned short>(terminal.cols()),
            .xPixels = pixelsOfNoView,
            .yPixels = pixelsOfNoView};
}

void HeadlessTerminal::processTerminated(LocalProcess& /*source*/, std::optional<int> exitCode) {
    if (onEnd) onEnd(exitCode);
}

}  // namespace orvane
