#pragma once

#include <array>
#include <optional>

#include "TerminalEmulator/Engine/Palette.h"
#include "TerminalEmulator/TerminalColor.h"
#include "TerminalEmulator/TerminalOptions.h"

namespace orvane {

/// The palette and the special colours, with what they are when a program has not set them.
struct ColorState {
    explicit ColorState(Ansi256PaletteStrategy strategy, const PaletteTheme& theme = PaletteTheme::standard);

    std::array<TerminalColor, 256> defaultAnsiColors;
    std::array<TerminalColor, 256> ansiColors;
    TerminalColor defaultForeground;
    TerminalColor defaultBackground;
    std::optional<TerminalColor> foreground;
    std::optional<TerminalColor> background;
    std::optional<TerminalColor> cursor;

    /// All colours as they are when a program has set none.
    void reset();
};

}  // namespace orvane
