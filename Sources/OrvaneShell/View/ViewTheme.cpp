#include "OrvaneShell/View/ViewTheme.h"

#include <algorithm>
#include <array>
#include <utility>

#include "OrvaneShell/View/NearestColor.h"
#include "OrvaneShell/View/Painting/ViewLook.h"

namespace orvane {

namespace {

using NearestColor::Rgb;
using Style = Attribute::CharacterStyle;
using Color = Attribute::Color;

/// Indexed colours in the place of those that painters name.
struct Tones {
    std::uint8_t red;
    std::uint8_t green;
    std::uint8_t yellow;
    std::uint8_t blue;
    std::uint8_t cyan;
};

// Of the sixteen, those that xterm and the consoles show with enough contrast: dark ground takes the bright red and
// blue; on a light one green, yellow and cyan cannot be read, bright or not.
constexpr Tones darkSixteen{.red = 9, .green = 2, .yellow = 3, .blue = 12, .cyan = 6};
constexpr Tones lightSixteen{.red = 1, .green = 4, .yellow = 5, .blue = 4, .cyan = 4};
constexpr Tones darkIndexed{.red = 203, .green = 114, .yellow = 221, .blue = 75, .cyan = 80};
constexpr Tones lightIndexed{.red = 124, .green = 22, .yellow = 94, .blue = 26, .cyan = 23};
/// In the place of dim text, which terminals dim as they like.
constexpr std::uint8_t darkGrey = 245;
constexpr std::uint8_t lightGrey = 241;

/// Of text, after the Web Content Accessibility Guidelines 2.1, 1.4.3.
constexpr double leastContrast = 4.5;

constexpr Style without(Style style, Style gone) {
    return static_cast<Style>(std::to_underlying(style) & ~std::to_underlying(gone));
}

constexpr bool has(Style style, Style wanted) {
    return (style & wanted) != Style::none;
}

std::uint8_t toneFor(const Tones& tones, std::uint8_t color) {
    switch (color) {
        case ViewLook::red:
            return tones.red;
        case ViewLook::green:
            return tones.green;
        case ViewLook::yellow:
            return tones.yellow;
        case ViewLook::blue:
            return tones.blue;
        case ViewLook::cyan:
            return tones.cyan;
        default:
            return color;
    }
}

/// A colour that a user has chosen, moved towards the text's own colour until it reads.
Rgb readable(Rgb color, ViewTheme::Ground ground) {
    const bool isDark = ground == ViewTheme::Ground::dark;
    const Rgb behind = isDark ? Rgb{} : Rgb{255, 255, 255};
    const auto moved = [isDark](std::uint8_t part) {
        return static_cast<std::uint8_t>(isDark ? part + (255 - part + 7) / 8 : part - (part + 7) / 8);
    };
    while (NearestColor::contrast(color, behind) < leastContrast)
        color = {moved(color.red), moved(color.green), moved(color.blue)};
    return color;
}

/// Of the sixteen the nearest; none where that one cannot be read.
Color ofSixteen(const Rgb& color, ViewTheme::Ground ground) {
    const std::uint8_t nearest = NearestColor::ofSixteen(color);
    const Rgb shown = NearestColor::rgb(nearest);
    return readable(shown, ground) == shown ? Color::ansi256(nearest) : Color::defaultColor();
}

Color colorFor(const Color& color, const ViewTheme& theme) {
    const bool isDark = theme.ground == ViewTheme::Ground::dark;
    const bool isIndexed = theme.palette == ViewTheme::Palette::indexed;
    if (const auto* named = std::get_if<Color::Ansi256>(&color.value)) {
        const Tones& tones = isIndexed ? (isDark ? darkIndexed : lightIndexed) : isDark ? darkSixteen : lightSixteen;
        return Color::ansi256(toneFor(tones, named->code));
    }
    if (const auto* direct = std::get_if<Color::TrueColor>(&color.value)) {
        const Rgb rgb = readable({direct->red, direct->green, direct->blue}, theme.ground);
        return isIndexed ? Color::trueColor(rgb.red, rgb.green, rgb.blue) : ofSixteen(rgb, theme.ground);
    }
    return color;
}

Attribute withoutColors(Attribute look) {
    if (look.fg != Color::defaultColor() && !has(look.style, Style::dim)) look.style = look.style | Style::bold;
    look.fg = look.bg = {};
    look.underlineColor.reset();
    return look;
}

}  // namespace

std::optional<ViewTheme::Choice> ViewTheme::choiceNamed(std::string_view name) {
    static constexpr std::array<std::pair<std::string_view, Choice>, 4> names{
        {{"auto", Choice::automatic}, {"dark", Choice::dark}, {"light", Choice::light}, {"none", Choice::none}}};
    const auto* const found = std::ranges::find(names, name, &std::pair<std::string_view, Choice>::first);
    return found == names.end() ? std::nullopt : std::optional(found->second);
}

ViewTheme ViewTheme::of(Choice choice, Ground background, OuterTerminal::Colors colors) {
    using Colors = OuterTerminal::Colors;
    ViewTheme theme{.ground = background, .palette = Palette::indexed};
    if (choice == Choice::dark) theme.ground = Ground::dark;
    if (choice == Choice::light) theme.ground = Ground::light;
    if (colors == Colors::sixteen) theme.palette = Palette::sixteen;
    if (choice == Choice::none || colors == Colors::none) theme = {.palette = Palette::none};
    return theme;
}

Attribute ViewTheme::applied(Attribute look) const {
    if (palette == Palette::asDrawn) return look;
    if (has(look.style, Style::inverse)) look.style = without(look.style, Style::dim);
    if (palette == Palette::none) return withoutColors(look);
    look.fg = colorFor(look.fg, *this);
    const bool isPlainDim = has(look.style, Style::dim) && look.fg == Color::defaultColor();
    if (isPlainDim && palette == Palette::indexed) {
        look.style = without(look.style, Style::dim);
        look.fg = Color::ansi256(ground == Ground::dark ? darkGrey : lightGrey);
    }
    return look;
}

}  // namespace orvane
