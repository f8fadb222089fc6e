#pragma once

#include <array>
#include <cstddef>

#include "TerminalEmulator/TerminalColor.h"
#include "TerminalEmulator/TerminalOptions.h"

namespace orvane {

/// What a theme gives: the sixteen base colours and those of plain text.
struct PaletteTheme {
    std::array<TerminalColor, 16> base;
    TerminalColor foreground;
    TerminalColor background;

    /// Orvane's own, which is dark.
    static const PaletteTheme standard;

    bool operator==(const PaletteTheme&) const = default;
};

/// All 256 colours of a theme. Colours 16 to 231 are a cube of 6x6x6 with red counting slowest, 232 to 255 a ramp of
/// greys from dark to light; only the harmonious strategy turns both round for a light theme, so that they run from
/// background to foreground as they do in a dark one.
std::array<TerminalColor, 256> paletteColors(Ansi256PaletteStrategy strategy, const PaletteTheme& theme);

}  // namespace orvane
