#pragma once

#include <string>
#include <vector>

#include "ScriptedAgent/Scenario.h"

namespace orvane::scripted {

struct Size {
    int cols = 80;
    int rows = 24;
    bool operator==(const Size&) const = default;
};

/// All that is to be seen at a moment. A cursor mark in a row is where the cursor goes.
struct Frame {
    std::string title;
    std::vector<std::string> conversation;  ///< settled: on the main screen it is printed once
    std::vector<std::string> above;         ///< follows the conversation
    std::vector<std::string> below;         ///< at the bottom of the alternate screen, else right after
    Cursor cursor = Cursor::hidden;
    bool operator==(const Frame&) const = default;
};

/// Turns frames into bytes as the agents do: on the alternate screen rows that changed are drawn anew; on the main
/// screen the conversation is printed and what follows it is erased row by row and printed again.
class Painter {
 public:
    explicit Painter(const Scenario& scenario) : scenario_(scenario) {}

    /// Empty when nothing is to be seen anew.
    std::string paint(const Frame& frame, Size size);
    /// The conversation begins anew, on an empty screen.
    std::string clear();

 private:
    std::string paintAlternate(const Frame& frame, Size size);
    std::string paintMain(const Frame& frame, Size size);
    std::string moveTo(int row) const;

    const Scenario& scenario_;
    Frame last_;
    Size size_;
    bool hasPainted_ = false;
    std::vector<std::string> shown_;  ///< rows of the alternate screen
    std::size_t printed_ = 0;         ///< rows of the conversation that are on the main screen for good
    int panelRows_ = 0;
    int rowsBelowCursor_ = 0;
};

}  // namespace orvane::scripted
