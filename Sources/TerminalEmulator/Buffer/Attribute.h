#pragma once

#include <cstdint>
#include <optional>
#include <variant>

namespace orvane {

/// The look of a cell, as the interfaces show it. What the screen keeps is a `StoredCell`.
struct Attribute {
    struct Color {
        /// The terminal's own foreground or background, whichever the colour is for.
        struct DefaultColor {
            bool operator==(const DefaultColor&) const = default;
        };
        struct Ansi256 {
            std::uint8_t code = 0;
            bool operator==(const Ansi256&) const = default;
        };
        struct TrueColor {
            std::uint8_t red = 0;
            std::uint8_t green = 0;
            std::uint8_t blue = 0;
            bool operator==(const TrueColor&) const = default;
        };
        /// The terminal's background used as a foreground, or the other way round.
        struct DefaultInvertedColor {
            bool operator==(const DefaultInvertedColor&) const = default;
        };

        std::variant<DefaultColor, Ansi256, TrueColor, DefaultInvertedColor> value;

        static constexpr Color ansi256(std::uint8_t code) { return {Ansi256{code}}; }
        static constexpr Color trueColor(std::uint8_t red, std::uint8_t green, std::uint8_t blue) {
            return {TrueColor{red, green, blue}};
        }
        static constexpr Color defaultColor() { return {}; }
        static constexpr Color defaultInvertedColor() { return {DefaultInvertedColor{}}; }

        bool operator==(const Color&) const = default;
    };

    /// A set of bits; join and meet them with `|` and `&`.
    enum class CharacterStyle : std::uint8_t {
        none = 0,
        bold = 1,
        underline = 2,
        blink = 4,
        inverse = 8,
        invisible = 16,
        dim = 32,
        italic = 64,
        crossedOut = 128,
    };

    enum class UnderlineStyle : std::uint8_t { none, single, double_, curly, dotted, dashed };

    Color fg;
    Color bg;
    CharacterStyle style = CharacterStyle::none;
    UnderlineStyle underlineStyle = UnderlineStyle::none;
    std::optional<Color> underlineColor;

    static const Attribute empty;

    bool operator==(const Attribute&) const = default;
};

inline constexpr Attribute Attribute::empty{};

constexpr Attribute::CharacterStyle operator|(Attribute::CharacterStyle a, Attribute::CharacterStyle b) {
    return static_cast<Attribute::CharacterStyle>(static_cast<std::uint8_t>(a) | static_cast<std::uint8_t>(b));
}

constexpr Attribute::CharacterStyle operator&(Attribute::CharacterStyle a, Attribute::CharacterStyle b) {
    return static_cast<Attribute::CharacterStyle>(static_cast<std::uint8_t>(a) & static_cast<std::uint8_t>(b));
}

}  // namespace orvane
