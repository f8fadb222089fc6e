#pragma once

#include <optional>
#include <string_view>

#include "TerminalEmulator/Engine/TerminalState.h"

/// Colours that programs set, ask for and reset.
namespace orvane::ColorFunctions {

/// In use: the program's own, else the delegate's, else the theme's.
TerminalColor foreground(const TerminalState& state);
TerminalColor background(const TerminalState& state);
TerminalColor cursor(const TerminalState& state);  ///< that of the text when the program has set none

void setPalette(TerminalState& state, std::string_view payload,
                StringEnd end);  ///< OSC 4: any number of "index;colour"
/// OSC 10 to 12, from `code` on one colour after the other: foreground, background, cursor.
void setDynamic(TerminalState& state, int code, std::string_view payload, StringEnd end);

void resetPalette(TerminalState& state, std::string_view payload);  ///< OSC 104: the entries that are named, else all
void resetForeground(TerminalState& state);                         ///< OSC 110
void resetBackground(TerminalState& state);                         ///< OSC 111
void resetCursor(TerminalState& state);                             ///< OSC 112

/// "code;rgb:…" as the answer to a question.
void tell(TerminalState& state, std::string_view code, const TerminalColor& color, StringEnd end);

}  // namespace orvane::ColorFunctions
