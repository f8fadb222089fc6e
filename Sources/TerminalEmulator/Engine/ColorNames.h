#pragma once

#include <optional>
#include <string_view>

#include "TerminalEmulator/TerminalColor.h"

namespace orvane {

/// The colour with this name in X11's table of colours, in lower case and without spaces ("lightsteelblue2", "gray42").
std::optional<TerminalColor> colorNamed(std::string_view name);

}  // namespace orvane
