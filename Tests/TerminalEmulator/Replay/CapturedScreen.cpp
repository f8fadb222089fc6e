#include "TerminalEmulator/Replay/CapturedScreen.h"

#include <fmt/format.h>

#include <array>
#include <cstdio>
#include <span>
#include <stdexcept>
#include <utility>

namespace orvane {

namespace {

using Style = Attribute::CharacterStyle;
using Color = Attribute::Color;

constexpr std::array<std::pair<int, Style>, 8> styles = {{{1, Style::bold},
                                                          {2, Style::dim},
                                                          {3, Style::italic},
                                                          {4, Style::underline},
                                                          {5, Style::blink},
                                                          {7, Style::inverse},
                                                          {8, Style::invisible},
                                                          {9, Style::crossedOut}}};

/// The characters 0x60 to 0x7E of DEC's line drawing set, which tmux keeps as it was written.
constexpr std::array<std::string_view, 31> lineDrawing = {"◆", "▒", "␉", "␌", "␍", "␊", "°", "±", "␤", "␋", "┘",
                                                          "┐", "┌", "└", "┼", "⎺", "⎻", "─", "⎼", "⎽", "├", "┤",
                                                          "┴", "┬", "│", "≤", "≥", "π", "≠", "£", "·"};

std::size_t lengthOfUtf8(unsigned char first) {
    return first < 0x80 ? 1 : first < 0xE0 ? 2 : first < 0xF0 ? 3 : 4;
}

/// Of the characters that the recordings hold: kana, CJK punctuation and ideographs lie between U+2E80 and U+9FFF.
bool isWide(std::string_view character) {
    return character >= "\u2E80" && character <= "\u9FFF" && character.size() == 3;
}

class Reader {
 public:
    explicit Reader(std::string_view text) : rest_(text) {}

    std::vector<ShownCell> row() {
        std::vector<ShownCell> cells;
        for (; !take("\n"); readOne(cells)) {
            if (rest_.empty()) throw std::invalid_argument("a row does not end");
        }
        return cells;
    }

    std::string_view rest() const { return rest_; }

 private:
    bool take(std::string_view prefix) {
        if (!rest_.starts_with(prefix)) return false;
        rest_.remove_prefix(prefix.size());
        return true;
    }

    void readOne(std::vector<ShownCell>& cells) {
        if (take("\x1B[")) return readSgr();
        if (take("\x0E")) {
            drawsLines_ = true;
        } else if (take("\x0F")) {
            drawsLines_ = false;
        } else {
            readCharacter(cells);
        }
    }

    void readCharacter(std::vector<ShownCell>& cells) {
        const auto first = static_cast<unsigned char>(rest_[0]);
        if (first < 0x20) throw std::invalid_argument(fmt::format("control code {:02x}", first));
        const std::string_view character = rest_.substr(0, lengthOfUtf8(first));
        rest_.remove_prefix(character.size());
        look_.text = drawsLines_ && first >= 0x60 && first < 0x7F ? lineDrawing[first - 0x60] : character;
        cells.push_back(look_);
        if (!isWide(character)) return;
        cells.push_back(look_);
        cells.back().text.clear();
    }

    void readSgr() {
        const std::size_t end = rest_.find('m');
        if (end == std::string_view::npos) throw std::invalid_argument("a sequence other than SGR");
        std::vector<int> parameters(1);
        for (const char byte : rest_.substr(0, end)) {
            if (byte == ';') {
                parameters.push_back(0);
            } else if (byte >= '0' && byte <= '9') {
                parameters.back() = parameters.back() * 10 + byte - '0';
            } else {
                throw std::invalid_argument(fmt::format("parameters {}", rest_.substr(0, end)));
            }
        }
        rest_.remove_prefix(end + 1);
        for (std::size_t at = 0; at < parameters.size();)
            at += apply(std::span(parameters).subspan(at));
    }

    /// How many parameters it took.
    std::size_t apply(std::span<const int> parameters) {
        const int code = parameters[0];
        if (code == 38 || code == 48) return setExtendedColor(parameters);
        if (code == 0) {
            look_ = {};
        } else if (const Style style = styleOf(code); style != Style::none) {
            look_.style = look_.style | style;
        } else {
            setColor(code);
        }
        return 1;
    }

    static Style styleOf(int code) {
        for (const auto& [number, style] : styles) {
            if (number == code) return style;
        }
        return Style::none;
    }

    void setColor(int code) {
        const bool isBright = code >= 90;
        const int base = isBright ? code - 60 : code;
        if (base < 30 || base > 49 || base % 10 == 8) throw std::invalid_argument(fmt::format("SGR {}", code));
        Color& color = base < 40 ? look_.foreground : look_.background;
        color = base % 10 == 9 ? Color{} : Color::ansi256(static_cast<std::uint8_t>(base % 10 + (isBright ? 8 : 0)));
    }

    std::size_t setExtendedColor(std::span<const int> parameters) {
        Color& color = parameters[0] == 38 ? look_.foreground : look_.background;
        const auto byte = [&](std::size_t index) { return static_cast<std::uint8_t>(parameters[index]); };
        if (parameters.size() >= 3 && parameters[1] == 5) {
            color = Color::ansi256(byte(2));
            return 3;
        }
        if (parameters.size() < 5 || parameters[1] != 2) throw std::invalid_argument("an extended colour");
        color = Color::trueColor(byte(2), byte(3), byte(4));
        return 5;
    }

    std::string_view rest_;
    ShownCell look_;  ///< goes on from row to row
    bool drawsLines_ = false;
};

std::string described(const Color& color) {
    if (const auto* indexed = std::get_if<Color::Ansi256>(&color.value)) return fmt::format("{}", indexed->code);
    if (const auto* direct = std::get_if<Color::TrueColor>(&color.value)) {
        return fmt::format("#{:02x}{:02x}{:02x}", direct->red, direct->green, direct->blue);
    }
    return color == Color::defaultColor() ? "default" : "inverted default";
}

}  // namespace

std::string described(const ShownCell& cell) {
    std::string text = fmt::format("'{}' {} on {}", cell.text, described(cell.foreground), described(cell.background));
    for (const auto& [code, style] : styles) {
        if ((cell.style & style) == style) text += fmt::format(" SGR {}", code);
    }
    return text;
}

CapturedScreen CapturedScreen::parse(std::string_view text) {
    CapturedScreen screen;
    Reader reader(text);
    while (!reader.rest().starts_with("cursor "))
        screen.rows.push_back(reader.row());
    int alternate = 0;
    if (std::sscanf(std::string(reader.rest()).c_str(), "cursor %d %d alternate %d", &screen.cursorX, &screen.cursorY,
                    &alternate) != 3) {
        throw std::invalid_argument("the line of the cursor");
    }
    screen.isAlternate = alternate == 1;
    return screen;
}

}  // namespace orvane
