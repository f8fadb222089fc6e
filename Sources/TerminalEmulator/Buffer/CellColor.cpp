#include "TerminalEmulator/Buffer/CellColor.h"

namespace orvane::CellColor {
namespace {

using Color = Attribute::Color;

constexpr std::uint32_t kindMask = 3U << 24;
constexpr std::uint32_t indexedKind = 1U << 24;
constexpr std::uint32_t directKind = 2U << 24;
constexpr std::uint32_t inverted = 3U << 24;

constexpr std::uint32_t underlineDefault = 257;
constexpr std::uint32_t underlineInverted = 258;
constexpr std::uint32_t underlineDirect = 1U << 24;

std::uint32_t rgb(const Color::TrueColor& color) {
    return static_cast<std::uint32_t>(color.red) << 16 | static_cast<std::uint32_t>(color.green) << 8 | color.blue;
}

Color fromRgb(std::uint32_t bits) {
    return Color::trueColor(static_cast<std::uint8_t>(bits >> 16), static_cast<std::uint8_t>(bits >> 8),
                            static_cast<std::uint8_t>(bits));
}

}  // namespace

std::uint32_t packed(const Color& color) {
    if (const auto* rgbColor = std::get_if<Color::TrueColor>(&color.value)) return directKind | rgb(*rgbColor);
    if (const auto* ansi = std::get_if<Color::Ansi256>(&color.value)) return indexed(ansi->code);
    return std::holds_alternative<Color::DefaultInvertedColor>(color.value) ? inverted : defaultColor;
}

Color unpacked(std::uint32_t bits) {
    switch (bits & kindMask) {
        case indexedKind:
            return Color::ansi256(static_cast<std::uint8_t>(bits));
        case directKind:
            return fromRgb(bits);
        case inverted:
            return Color::defaultInvertedColor();
        default:
            return Color::defaultColor();
    }
}

std::uint32_t packedUnderline(const std::optional<Color>& color) {
    if (!color) return 0;
    if (const auto* direct_ = std::get_if<Color::TrueColor>(&color->value)) return underlineDirect | rgb(*direct_);
    if (const auto* ansi = std::get_if<Color::Ansi256>(&color->value)) return 1U + ansi->code;
    return std::holds_alternative<Color::DefaultInvertedColor>(color->value) ? underlineInverted : underlineDefault;
}

std::optional<Color> unpackedUnderline(std::uint32_t bits) {
    if (bits == 0) return std::nullopt;
    if ((bits & underlineDirect) != 0) return fromRgb(bits);
    if (bits == underlineDefault) return Color::defaultColor();
    if (bits == underlineInverted) return Color::defaultInvertedColor();
    return Color::ansi256(static_cast<std::uint8_t>(bits - 1));
}

}  // namespace orvane::CellColor
