#pragma once

#include "TerminalEmulator/Engine/TerminalState.h"

/// What the terminal tells a program of the mouse and the focus, in the form that the program has asked for.
namespace orvane::InputReports {

/// Beside the number of a button: that it went up. The older protocols do not tell which one.
inline constexpr int releaseFlag = 0x100;
inline constexpr int motionFlag = 0x20;

struct Modifiers {
    bool shift = false;
    bool meta = false;
    bool control = false;
};
enum class Edge { press, release };

/// Button 0 to 2, 3 for none, 4 to 7 for the wheel.
int encodeButton(const TerminalState& state, int button, Edge edge, Modifiers modifiers);

struct MousePlace {
    int x = 0;  ///< column from 0
    int y = 0;
    int pixelX = 0;
    int pixelY = 0;
};

/// Nothing when the program wants no such event or its protocol cannot say it (xterm's first one ends at column 223).
void sendButton(TerminalState& state, int buttonFlags, const MousePlace& place);
void sendMotion(TerminalState& state, int buttonFlags, const MousePlace& place);
void sendFocus(TerminalState& state, bool hasFocus);

}  // namespace orvane::InputReports
