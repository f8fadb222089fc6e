#pragma once

#include <string>
#include <string_view>

#include "TerminalEmulator/Engine/TerminalState.h"
#include "TerminalEmulator/Parser/ParserHandler.h"

/// Titles of the window and of its icon: set by OSC, pushed, popped and told by XTWINOPS.
namespace orvane::TitleFunctions {

enum class Title { window, icon };

/// The payload of an OSC, in the encoding that the title modes ask for. One that is malformed changes nothing.
void set(TerminalState& state, Title title, std::string_view payload);

/// As a report has it, in the encoding that the title modes ask for.
std::string told(const TitleState& titles, Title title);

void push(TerminalState& state, Title title);
void pop(TerminalState& state, Title title);

void setModes(TerminalState& state, const ParserParameters& parameters);    ///< XTSMTITLE, CSI > … t
void resetModes(TerminalState& state, const ParserParameters& parameters);  ///< XTRMTITLE, CSI > … T

}  // namespace orvane::TitleFunctions
