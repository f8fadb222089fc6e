#pragma once

#include <chrono>
#include <string>

#include "Support/Failure.h"

namespace orvane::benchmark {

struct ViewSettings {
    std::string orvane = ORVANE_EXECUTABLE;
    int blocks = 24;
    int keysOfBlock = 50;
    int floodRounds = 3;
    int keysInFlood = 200;  ///< of one round
    std::chrono::milliseconds stall{2000};
};

/// A program that writes without end.
struct Flood {
    std::string name;
    std::string command;  ///< for the shell
};

/// From a key to its echo when nothing else happens: a bare program, tmux and Orvane in turns. Memory, too.
[[nodiscard]] Measured<void> measureKeys(const ViewSettings& settings);
/// The same beside a pane that is flooded, and what comes to the terminal.
[[nodiscard]] Measured<void> measureFlood(const Flood& flood, const ViewSettings& settings);
/// What others notice of a terminal that does not read, and what it shows when it reads again.
[[nodiscard]] Measured<void> measureStalledTerminal(const Flood& flood, const ViewSettings& settings);

}  // namespace orvane::benchmark
