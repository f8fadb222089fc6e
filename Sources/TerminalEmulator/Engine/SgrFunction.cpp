#include "TerminalEmulator/Engine/SgrFunction.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>

#include "TerminalEmulator/Buffer/CellColor.h"

namespace orvane {

namespace {

using Style = Attribute::CharacterStyle;
using Underline = Attribute::UnderlineStyle;

enum class ColorTarget { foreground, background, underline };

bool isByte(std::int32_t value) {
    return value >= 0 && value <= 255;
}

std::uint8_t byteOf(std::int32_t value) {
    return static_cast<std::uint8_t>(value);
}

void setUnderline(Pen& pen, Underline style) {
    if (style == Underline::none) {
        pen.removeStyle(Style::underline);
    } else {
        pen.addStyle(Style::underline);
    }
    pen.setUnderlineStyle(style);
}

void setIndexed(Pen& pen, ColorTarget target, std::uint8_t code) {
    switch (target) {
        case ColorTarget::foreground:
            return pen.setForegroundBits(CellColor::indexed(code));
        case ColorTarget::background:
            return pen.setBackgroundBits(CellColor::indexed(code));
        case ColorTarget::underline:
            return pen.setUnderlineColor(Attribute::Color::ansi256(code));
    }
}

void setDirect(Pen& pen, ColorTarget target, std::uint8_t red, std::uint8_t green, std::uint8_t blue) {
    switch (target) {
        case ColorTarget::foreground:
            return pen.setForegroundBits(CellColor::direct(red, green, blue));
        case ColorTarget::background:
            return pen.setBackgroundBits(CellColor::direct(red, green, blue));
        case ColorTarget::underline:
            return pen.setUnderlineColor(Attribute::Color::trueColor(red, green, blue));
    }
}

void setDirect(Pen& pen, ColorTarget target, std::span<const std::int32_t> rgb) {
    if (std::ranges::all_of(rgb.first(3), isByte))
        setDirect(pen, target, byteOf(rgb[0]), byteOf(rgb[1]), byteOf(rgb[2]));
}

/// `values` are those behind the 38, 48 or 58, joined to it by colons.
void setColorByColons(Pen& pen, ColorTarget target, std::span<const std::int32_t> values) {
    if (values.size() >= 2 && values[0] == 5 && isByte(values[1])) {
        setIndexed(pen, target, byteOf(values[1]));
    } else if (values.size() == 4 && values[0] == 2) {
        setDirect(pen, target, values.subspan(1));
    } else if (values.size() >= 5 && values[0] == 2) {
        setDirect(pen, target, values.subspan(2));
    }
}

/// `values` are all that follow. Gives back how many of them belonged to the colour.
std::size_t setColorBySemicolons(Pen& pen, ColorTarget target, std::span<const std::int32_t> values) {
    if (values.size() >= 2 && values[0] == 5) {
        if (isByte(values[1])) setIndexed(pen, target, byteOf(values[1]));
        return 2;
    }
    if (values.size() >= 4 && values[0] == 2) {
        setDirect(pen, target, values.subspan(1));
        return 4;
    }
    return values.size();  // cut short: none of it can be read
}

std::optional<ColorTarget> colorTarget(std::int32_t code) {
    switch (code) {
        case 38:
            return ColorTarget::foreground;
        case 48:
            return ColorTarget::background;
        case 58:
            return ColorTarget::underline;
        default:
            return {};
    }
}

/// The codes that set or clear one thing; false for one that is not known.
bool applyStyle(Pen& pen, std::int32_t code) {
    switch (code) {
        case 0:
            pen.resetAttribute();
            return true;
        case 1:
            pen.addStyle(Style::bold);
            return true;
        case 2:
            pen.addStyle(Style::dim);
            return true;
        case 3:
            pen.addStyle(Style::italic);
            return true;
        case 4:
            setUnderline(pen, Underline::single);
            return true;
        case 5:
        case 6:
            pen.addStyle(Style::blink);
            return true;
        case 7:
            pen.addStyle(Style::inverse);
            return true;
        case 8:
            pen.addStyle(Style::invisible);
            return true;
        case 9:
            pen.addStyle(Style::crossedOut);
            return true;
        case 21:
            setUnderline(pen, Underline::double_);
            return true;
        case 22:
            pen.removeStyle(Style::bold | Style::dim);
            return true;
        case 23:
            pen.removeStyle(Style::italic);
            return true;
        case 24:
            setUnderline(pen, Underline::none);
            return true;
        case 25:
            pen.removeStyle(Style::blink);
            return true;
        case 26:
            return true;
        case 27:
            pen.removeStyle(Style::inverse);
            return true;
        case 28:
            pen.removeStyle(Style::invisible);
            return true;
        case 29:
            pen.removeStyle(Style::crossedOut);
            return true;
        case 39:
            pen.setForegroundBits(CellColor::defaultColor);
            return true;
        case 49:
            pen.setBackgroundBits(CellColor::defaultColor);
            return true;
        case 59:
            pen.setUnderlineColor({});
            return true;
        default:
            return false;
    }
}

/// The sixteen colours that have codes of their own.
bool applyBaseColor(Pen& pen, std::int32_t code) {
    if (code >= 30 && code <= 37) {
        pen.setForegroundBits(CellColor::indexed(byteOf(code - 30)));
    } else if (code >= 40 && code <= 47) {
        pen.setBackgroundBits(CellColor::indexed(byteOf(code - 40)));
    } else if (code >= 90 && code <= 97) {
        pen.setForegroundBits(CellColor::indexed(byteOf(code - 90 + 8)));
    } else if (code >= 100 && code <= 107) {
        pen.setBackgroundBits(CellColor::indexed(byteOf(code - 100 + 8)));
    } else {
        return false;
    }
    return true;
}

void applySubparameters(Pen& pen, std::int32_t code, std::span<const std::int32_t> values) {
    if (const auto target = colorTarget(code)) {
        setColorByColons(pen, *target, values);
    } else if (code == 4 && values[0] <= static_cast<std::int32_t>(Underline::dashed)) {
        setUnderline(pen, static_cast<Underline>(values[0]));
    }
}

}  // namespace

void selectGraphicRendition(TerminalState& state, const ParserParameters& parameters) {
    Pen& pen = state.buffer->pen;
    const std::span<const std::int32_t> values = parameters.values;
    for (std::size_t index = 0; index < values.size(); ++index) {
        const std::int32_t code = values[index];
        std::size_t end = index + 1;
        while (parameters.isSubparameter(end))
            ++end;
        if (end > index + 1) {
            applySubparameters(pen, code, values.subspan(index + 1, end - index - 1));
            index = end - 1;
        } else if (applyBaseColor(pen, code) || applyStyle(pen, code)) {
            continue;
        } else if (const auto target = colorTarget(code)) {
            index += setColorBySemicolons(pen, *target, values.subspan(index + 1));
        } else {
            state.log("Unknown SGR attribute: ", std::to_string(code));
        }
    }
}

}  // namespace orvane
