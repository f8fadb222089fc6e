#include "TerminalEmulator/Engine/ColorState.h"

namespace orvane {

ColorState::ColorState(Ansi256PaletteStrategy strategy, const PaletteTheme& theme)
    : defaultAnsiColors(paletteColors(strategy, theme)),
      ansiColors(defaultAnsiColors),
      defaultForeground(theme.foreground),
      defaultBackground(theme.background) {}

void ColorState::reset() {
    ansiColors = defaultAnsiColors;
    foreground.reset();
    background.reset();
    cursor.reset();
}

}  // namespace orvane
