#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace orvane {

/// A colour that marks a project.
struct ProjectColor {
    std::string_view nameKey;
    /// Six upper-case hex digits, RRGGBB.
    std::string_view hex;
};

namespace ProjectPalette {

/// Neighbours differ strongly, for projects take the colours in this order. Each has a contrast of at least 3:1 (WCAG
/// 2.2, 1.4.11) against white and against #1E1E1E, so that it reads on light and on dark terminals.
inline constexpr std::array<ProjectColor, 12> colors = {{
    {.nameKey = "project.color.blue", .hex = "1E64EF"},
    {.nameKey = "project.color.orange", .hex = "DF6E07"},
    {.nameKey = "project.color.green", .hex = "029B29"},
    {.nameKey = "project.color.red", .hex = "DF202E"},
    {.nameKey = "project.color.purple", .hex = "914DE6"},
    {.nameKey = "project.color.teal", .hex = "079A94"},
    {.nameKey = "project.color.pink", .hex = "EA4796"},
    {.nameKey = "project.color.gold", .hex = "AE8A09"},
    {.nameKey = "project.color.sky", .hex = "069CD8"},
    {.nameKey = "project.color.lime", .hex = "809D07"},
    {.nameKey = "project.color.brown", .hex = "91644B"},
    {.nameKey = "project.color.slate", .hex = "6D7C8C"},
}};

/// The colour at an index; beyond either end the palette starts over.
const ProjectColor& color(std::int64_t index);

/// Six hex digits of either case, with or without a leading '#', as upper-case digits; anything else is none.
std::optional<std::string> colorHex(std::string_view text);

}  // namespace ProjectPalette

}  // namespace orvane
