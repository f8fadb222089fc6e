#include "TerminalEmulator/Engine/SgrText.h"

#include <fmt/format.h>

namespace orvane {
namespace {

using Color = Attribute::Color;
using Style = Attribute::CharacterStyle;
using Underline = Attribute::UnderlineStyle;

struct StyleCode {
    Style style;
    int code;
};

constexpr StyleCode beforeUnderline[] = {{Style::bold, 1}, {Style::dim, 2}, {Style::italic, 3}};
constexpr StyleCode afterUnderline[] = {
    {Style::blink, 5}, {Style::inverse, 7}, {Style::invisible, 8}, {Style::crossedOut, 9}};

bool has(const Attribute& attribute, Style style) {
    return (attribute.style & style) != Style::none;
}

std::string underlineText(const Attribute& attribute) {
    switch (attribute.underlineStyle) {
        case Underline::none:
            return has(attribute, Style::underline) ? ";4" : "";
        case Underline::single:
            return ";4";
        case Underline::double_:
            return ";21";
        case Underline::curly:
            return ";4:3";
        case Underline::dotted:
            return ";4:4";
        case Underline::dashed:
            return ";4:5";
    }
    return {};
}

/// `code` is 38, 48 or 58.
std::string extendedText(const Color& color, int code) {
    if (const auto* indexed = std::get_if<Color::Ansi256>(&color.value))
        return fmt::format(";{}:5:{}", code, indexed->code);
    if (const auto* direct = std::get_if<Color::TrueColor>(&color.value))
        return fmt::format(";{}:2::{}:{}:{}", code, direct->red, direct->green, direct->blue);
    return {};
}

/// The sixteen base colours have codes of their own: `code` less 8 and above, and 60 more for the bright ones.
std::string colorText(const Color& color, int code) {
    const auto* indexed = std::get_if<Color::Ansi256>(&color.value);
    if (indexed == nullptr || indexed->code >= 16) return extendedText(color, code);
    const int base = code - 8 + indexed->code % 8;
    return fmt::format(";{}", indexed->code < 8 ? base : base + 60);
}

}  // namespace

std::string sgrText(const Attribute& attribute) {
    std::string text = "0";
    const auto add = [&](const StyleCode& row) {
        if (has(attribute, row.style)) text += fmt::format(";{}", row.code);
    };
    for (const StyleCode& row : beforeUnderline)
        add(row);
    text += underlineText(attribute);
    for (const StyleCode& row : afterUnderline)
        add(row);
    text += colorText(attribute.fg, 38);
    text += colorText(attribute.bg, 48);
    if (attribute.underlineColor) text += extendedText(*attribute.underlineColor, 58);
    return text;
}

}  // namespace orvane
