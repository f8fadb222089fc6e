#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

namespace orvane {

enum class CursorStyle : std::uint8_t {
    blinkBlock,
    steadyBlock,
    blinkUnderline,
    steadyUnderline,
    blinkBar,
    steadyBar,
};

/// Where the upper 240 of the 256 colours come from: xterm's fixed cube and grey ramp, or blends of the sixteen base
/// colours in the Lab space, the harmonious one following the theme's own light and dark.
enum class Ansi256PaletteStrategy : std::uint8_t { xterm, base16Lab, base16LabHarmonious };

/// How many columns a cluster that starts with a regional indicator takes: 2 or 1.
enum class RegionalIndicatorWidth : std::uint8_t { wide, narrow };

struct TerminalOptions {
    int cols = 80;
    int rows = 25;
    bool convertEol = false;  ///< a line feed also returns the carriage
    std::string termName = "xterm-256color";
    CursorStyle cursorStyle = CursorStyle::blinkBlock;
    bool screenReaderMode = false;
    std::optional<int> scrollback = 500;  ///< lines of history; 0 and none at all both keep nothing
    int tabStopWidth = 8;
    bool enableSixelReported = true;
    std::size_t kittyImageCacheLimitBytes = 335'544'320;
    Ansi256PaletteStrategy ansi256PaletteStrategy = Ansi256PaletteStrategy::base16Lab;
    RegionalIndicatorWidth regionalIndicatorWidth = RegionalIndicatorWidth::wide;
    /// This computer's, which file URLs of local programs carry (OSC 7). With none only those without a host count.
    std::string hostName;
};

}  // namespace orvane
