#include "OrvaneShell/View/CellLook.h"

#include <algorithm>
#include <charconv>
#include <optional>
#include <utility>

#include "OrvaneShell/View/NearestColor.h"
#include "TerminalEmulator/Buffer/CellColor.h"

namespace orvane {

namespace {

using Colors = OuterTerminal::Colors;
using NearestColor::Rgb;

constexpr std::uint32_t colorMask = 0x3FFFFFF;
constexpr std::uint32_t indexedKind = 1;
constexpr std::uint32_t directKind = 2;
constexpr std::uint32_t invertedKind = 3;

constexpr std::uint8_t bits(Attribute::CharacterStyle style) {
    return static_cast<std::uint8_t>(style);
}

constexpr std::uint8_t underlineBit = bits(Attribute::CharacterStyle::underline);
constexpr std::uint8_t inverseBit = bits(Attribute::CharacterStyle::inverse);
constexpr std::uint8_t intensityBits = bits(Attribute::CharacterStyle::bold | Attribute::CharacterStyle::dim);
constexpr std::uint32_t single = 1;

std::uint32_t kindOf(std::uint32_t color) {
    return color >> 24;
}

/// None for the terminal's own colours, of which only the terminal knows what they are.
std::optional<Rgb> rgbOf(std::uint32_t color) {
    const auto byte = [&](int shift) { return static_cast<std::uint8_t>(color >> shift); };
    if (kindOf(color) == indexedKind) return NearestColor::rgb(byte(0));
    if (kindOf(color) == directKind) return Rgb{byte(16), byte(8), byte(0)};
    return {};
}

std::uint32_t reduced(std::uint32_t color, Colors colors) {
    const bool isIndexed = kindOf(color) == indexedKind;
    if (colors == Colors::none || kindOf(color) == invertedKind) return CellColor::defaultColor;
    if (colors == Colors::direct || kindOf(color) == 0) return color;
    if (isIndexed && (colors == Colors::indexed || (color & 0xFF) < 16)) return color;
    const Rgb rgb = *rgbOf(color);
    return CellColor::indexed(colors == Colors::indexed ? NearestColor::ofCubeAndRamp(rgb)
                                                        : NearestColor::ofSixteen(rgb));
}

/// Two colours that became one would hide the text.
std::uint32_t readable(std::uint32_t foreground, std::uint32_t background) {
    const auto behind = rgbOf(background);
    if (!behind || foreground != background) return foreground;
    return CellColor::indexed(NearestColor::isLight(*behind) ? 0 : 15);
}

std::uint32_t underlineColorOf(const StoredCell& cell, Colors colors) {
    const std::uint32_t packed = (cell.foreground >> 29) << 22 | (cell.background >> 26) << 16 | cell.extra >> 16;
    if (packed == 0) return 0;
    const std::uint32_t color = CellColor::packed(*CellColor::unpackedUnderline(packed));
    const std::uint32_t shown = reduced(color, colors);
    return shown == CellColor::defaultColor ? 0 : CellColor::packedUnderline(CellColor::unpacked(shown));
}

struct StyleCode {
    Attribute::CharacterStyle style;
    int on;
    int off;
};

using Style = Attribute::CharacterStyle;
constexpr StyleCode styleCodes[] = {{Style::bold, 1, 22},      {Style::dim, 2, 22},     {Style::italic, 3, 23},
                                    {Style::blink, 5, 25},     {Style::inverse, 7, 27}, {Style::invisible, 8, 28},
                                    {Style::crossedOut, 9, 29}};

/// Parameters one after the other, set apart by semicolons.
class Parameters {
 public:
    explicit Parameters(std::string& out) : out_(out) {}

    void add(int value) {
        if (!std::exchange(isFirst_, false)) out_ += ';';
        number(value);
    }
    void subparameter(int value) {
        out_ += ':';
        number(value);
    }
    void emptySubparameter() { out_ += ':'; }

 private:
    void number(int value) {
        char digits[12];
        out_.append(digits, std::to_chars(digits, std::end(digits), value).ptr);
    }

    std::string& out_;
    bool isFirst_ = true;
};

/// `code` is 38 or 48. Semicolons, for colons came later and not everywhere.
void addColor(Parameters& parameters, std::uint32_t color, int code) {
    const auto byte = [&](int shift) { return static_cast<int>(color >> shift & 0xFF); };
    if (kindOf(color) == directKind) {
        for (const int value : {code, 2, byte(16), byte(8), byte(0)})
            parameters.add(value);
    } else if (kindOf(color) != indexedKind) {
        parameters.add(code + 1);
    } else if (byte(0) < 16) {
        parameters.add(byte(0) < 8 ? code - 8 + byte(0) : code + 52 + byte(0) - 8);
    } else {
        for (const int value : {code, 5, byte(0)})
            parameters.add(value);
    }
}

/// Colons, so that a terminal that does not know 58 skips all of it.
void addUnderlineColor(Parameters& parameters, std::uint32_t packed) {
    const auto color = CellColor::unpackedUnderline(packed);
    if (!color) return parameters.add(59);
    parameters.add(58);
    if (const auto* direct = std::get_if<Attribute::Color::TrueColor>(&color->value)) {
        parameters.subparameter(2);
        parameters.emptySubparameter();
        for (const int value : {direct->red, direct->green, direct->blue})
            parameters.subparameter(value);
    } else {
        parameters.subparameter(5);
        parameters.subparameter(static_cast<int>(packed - 1));
    }
}

void addUnderline(Parameters& parameters, std::uint8_t underline) {
    parameters.add(underline == 0 ? 24 : 4);
    if (underline > single) parameters.subparameter(underline);
}

void addStyles(Parameters& parameters, std::uint8_t from, std::uint8_t to) {
    auto gone = static_cast<std::uint8_t>(from & ~to);
    // One code ends both.
    if ((gone & intensityBits) != 0) {
        parameters.add(22);
        from &= static_cast<std::uint8_t>(~intensityBits);
        gone &= static_cast<std::uint8_t>(~intensityBits);
    }
    const auto come = static_cast<std::uint8_t>(to & ~from);
    for (const auto& [style, on, off] : styleCodes) {
        if ((gone & bits(style)) != 0) parameters.add(off);
        if ((come & bits(style)) != 0) parameters.add(on);
    }
}

void addDifference(Parameters& parameters, const CellLook& from, const CellLook& to) {
    addStyles(parameters, from.style, to.style);
    if (from.underline != to.underline) addUnderline(parameters, to.underline);
    if (from.foreground != to.foreground) addColor(parameters, to.foreground, 38);
    if (from.background != to.background) addColor(parameters, to.background, 48);
    if (from.underlineColor != to.underlineColor) addUnderlineColor(parameters, to.underlineColor);
}

}  // namespace

CellLook CellLook::of(const StoredCell& cell, const OuterTerminal& outer) {
    const std::uint32_t foreground = cell.foreground & colorMask;
    const std::uint32_t background = cell.background & colorMask;
    const auto allStyles = static_cast<std::uint8_t>(cell.text >> 24);
    std::uint32_t underline = (cell.foreground >> 26) & 7;
    if (underline == 0 && (allStyles & underlineBit) != 0) underline = single;
    if (underline != 0 && !outer.styledUnderlines) underline = single;
    CellLook look{.foreground = reduced(foreground, outer.colors),
                  .background = reduced(background, outer.colors),
                  .underlineColor = outer.styledUnderlines ? underlineColorOf(cell, outer.colors) : 0,
                  .underline = static_cast<std::uint8_t>(underline),
                  .style = static_cast<std::uint8_t>(allStyles & ~underlineBit)};
    if (foreground != background) look.foreground = readable(look.foreground, look.background);
    const bool isSwapped = kindOf(foreground) == invertedKind && kindOf(background) == invertedKind;
    if (isSwapped) look.style ^= inverseBit;
    return look;
}

void appendSgr(const CellLook& from, const CellLook& to, std::string& out) {
    if (from == to) return;
    out += "\x1b[";
    const std::size_t start = out.size();
    if (to != CellLook{}) {
        Parameters difference(out);
        addDifference(difference, from, to);
        const std::size_t middle = out.size();
        Parameters whole(out);
        whole.add(0);
        addDifference(whole, {}, to);
        // Both stand there now; the shorter one stays.
        if (out.size() - middle < middle - start) {
            out.erase(start, middle - start);
        } else {
            out.resize(middle);
        }
    }
    out += 'm';
}

}  // namespace orvane
