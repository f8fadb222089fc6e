#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "TerminalEmulator/TerminalColor.h"

/// How programs write colours, after XParseColor(3).
namespace orvane::ColorSpec {

/// "rgb:h/h/h" with 1 to 4 hexadecimal digits a channel, "#" and 3, 6, 9 or 12 of them, "rgbi:" with three fractions
/// from 0 to 1, or one of X11's names, whose case and spaces do not count. As on a display of 8 bits a channel, what is
/// finer than that is cut off, and "#fff" is 0xF0F0 as it gives the upper bits alone. Nothing for anything else.
std::optional<TerminalColor> parse(std::string_view text);

/// As answers have it: "rgb:rrrr/gggg/bbbb" in lower case.
std::string format(const TerminalColor& color);

}  // namespace orvane::ColorSpec
