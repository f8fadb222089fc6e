#pragma once

#include <cstdint>
#include <string_view>

#include "TerminalEmulator/Buffer/Attribute.h"

/// The looks of the view as painters name them; the theme of the canvas turns their colours into such as read on the
/// terminal's background. Text has the terminal's own colours and weights.
namespace orvane::ViewLook {

using Style = Attribute::CharacterStyle;

inline constexpr std::uint8_t red = 1;
inline constexpr std::uint8_t green = 2;
inline constexpr std::uint8_t yellow = 3;
inline constexpr std::uint8_t blue = 4;
inline constexpr std::uint8_t cyan = 6;

inline constexpr Attribute plain{};
inline constexpr Attribute dim{.style = Style::dim};
inline constexpr Attribute bold{.style = Style::bold};
inline constexpr Attribute selected{.style = Style::inverse};
inline constexpr Attribute key{.fg = Attribute::Color::ansi256(cyan), .style = Style::bold};

constexpr Attribute colored(std::uint8_t color, Style style = Style::none) {
    return {.fg = Attribute::Color::ansi256(color), .style = style};
}

/// RRGGBB, as projects have their colours.
Attribute ofHex(std::string_view hex, Style style = Style::none);

/// Text on a bar of that colour.
constexpr Attribute onBar(Attribute look) {
    look.style = look.style | Style::inverse;
    return look;
}

}  // namespace orvane::ViewLook
