#pragma once

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <iterator>
#include <string>
#include <string_view>

#include "OrvaneShell/View/CanvasPen.h"
#include "OrvaneShell/View/CellLook.h"
#include "TerminalEmulator/Buffer/TinyAtom.h"
#include "TerminalEmulator/Engine/RecordingDelegate.h"
#include "TerminalEmulator/Terminal.h"

namespace orvane::testing {

/// Picks a number below the limit.
using BelowLimit = std::function<std::size_t(std::size_t limit)>;

inline constexpr OuterTerminal everyFeature{.colors = OuterTerminal::Colors::direct,
                                            .synchronizedOutput = true,
                                            .styledUnderlines = true,
                                            .hyperlinks = true,
                                            .cursorStyles = true,
                                            .eraseCharacters = true};

inline constexpr std::string_view canvasTexts[] = {"a",
                                                   "plain words",
                                                   "  ",
                                                   "日本語",
                                                   "ｆｕｌｌ",
                                                   "e\u0301clair",
                                                   "👩‍👩‍👧",
                                                   "🇫🇷🇯🇵",
                                                   "❤\uFE0F",
                                                   "✔",
                                                   "\uE0B0",
                                                   "──────",
                                                   "👍🏽",
                                                   "각",
                                                   "x                      y",
                                                   "ไทย์",
                                                   "🙂",
                                                   "\x1b[31mred\r\n"};

inline Attribute::Color pickedColor(const BelowLimit& below) {
    const auto byte = [&] { return static_cast<std::uint8_t>(below(256)); };
    switch (below(4)) {
        case 0:
            return Attribute::Color::ansi256(byte());
        case 1:
            return Attribute::Color::trueColor(byte(), byte(), byte());
        default:
            return {};
    }
}

inline Attribute pickedLook(const BelowLimit& below) {
    Attribute look;
    if (below(2) == 0) return look;
    look.fg = pickedColor(below);
    look.bg = pickedColor(below);
    look.style = static_cast<Attribute::CharacterStyle>(below(4) == 0 ? below(256) : 0);
    look.underlineStyle = static_cast<Attribute::UnderlineStyle>(below(6));
    if (below(4) == 0) look.underlineColor = pickedColor(below);
    return look;
}

inline void link(Canvas& canvas, int y, int start, int end, TinyAtom target) {
    for (int x = start; x < std::min(end, canvas.cols()); ++x) {
        std::uint32_t& extra = canvas.row(y)[static_cast<std::size_t>(x)].extra;
        extra = (extra & 0xFFFF0000) | target.code;
    }
}

/// One change as the workspace makes them: words, areas, another look, rows that move up, links, the cursor.
inline void edit(Canvas& canvas, const BelowLimit& below) {
    const auto col = [&] { return static_cast<int>(below(static_cast<std::size_t>(canvas.cols()))); };
    const auto row = [&] { return static_cast<int>(below(static_cast<std::size_t>(canvas.rows()))); };
    CanvasPen pen(canvas, {0, 0, canvas.cols(), canvas.rows()});
    switch (below(9)) {
        case 0:
            pen.fill({col(), row(), col(), row()}, pickedLook(below), below(3) == 0 ? U'本' : U' ');
            break;
        case 1:
            pen.restyle({col(), row(), col(), row()}, [&](Attribute look) {
                look.style = look.style | Attribute::CharacterStyle::inverse;
                return look;
            });
            break;
        case 2: {
            const int count = row();
            for (int y = 0; y + count < canvas.rows(); ++y)
                std::ranges::copy(canvas.row(y + count), canvas.row(y).begin());
            break;
        }
        case 3:
            canvas.cursor.reset();
            if (below(3) > 0) canvas.cursor = {col(), row(), static_cast<CursorStyle>(below(6))};
            break;
        case 4: {
            // Few, so that the table of the process stays small; nobody gives them back.
            const std::array<TinyAtom, 3> targets{TinyAtom::lookup("id=1;https://a.example"),
                                                  TinyAtom::lookup(";file:///tmp/a b"), TinyAtom{}};
            const int start = col();
            link(canvas, row(), start, start + col(), targets[below(targets.size())]);
            break;
        }
        case 5:
            if (below(8) == 0) canvas.clear();
            break;
        default:
            pen.text(col(), row(), canvasTexts[below(std::size(canvasTexts))], pickedLook(below),
                     below(3) == 0 ? col() : 1000);
    }
}

/// A terminal in front of which somebody sits.
class OuterScreen {
 public:
    OuterScreen(int cols, int rows) : terminal(delegate, {.cols = cols, .rows = rows}) {
        // What another program left there.
        terminal.feed("\x1b[?7l\x1b[?25hleft \x1b[41mbehind\x1b]8;;https://left.example\x1b\\");
    }

    /// The first thing in which it differs from the canvas; empty when it shows just that.
    std::string difference(const Canvas& canvas, const OuterTerminal& outer) const {
        OuterTerminal own = everyFeature;
        own.hyperlinks = outer.hyperlinks;
        for (int y = 0; y < canvas.rows(); ++y) {
            for (int x = 0; x < canvas.cols(); ++x) {
                const Seen wanted(canvas.row(y)[static_cast<std::size_t>(x)], canvas.clusters(), outer);
                const Seen shown(terminal.getLine(y).at(x), terminal.clusters(), own);
                if (wanted != shown) return fmt::format("{},{}: {} instead of {}", x, y, shown.told(), wanted.told());
            }
        }
        const std::string wanted = describe(canvas, outer);
        return wanted == cursor(outer) ? "" : fmt::format("cursor {} instead of {}", cursor(outer), wanted);
    }

    RecordingDelegate delegate;
    Terminal terminal;

 private:
    /// What a person sees of a cell. Of a link its address: ids are the writer's business.
    struct Seen {
        Seen(const StoredCell& cell, const ClusterTable& clusters, const OuterTerminal& outer) : width(cell.width()) {
            if (width == 0) return;
            text = cell.isEmpty() ? " " : clusters.text(cell.code());
            look = CellLook::of(cell, outer);
            const std::string* target = outer.hyperlinks ? cell.payload().target() : nullptr;
            if (target == nullptr) return;
            address = target->substr(target->find(';') + 1);
            if (const auto space = address.find(' '); space != std::string::npos) address.replace(space, 1, "%20");
        }

        std::string told() const {
            return fmt::format("'{}' {} {:x}/{:x}/{:x} {:x}/{:x} {}", text, width, look.foreground, look.background,
                               look.underlineColor, look.underline, look.style, address);
        }

        bool operator==(const Seen&) const = default;

        int width;
        std::string text;
        CellLook look;
        std::string address;
    };

    static std::string describe(const Canvas& canvas, const OuterTerminal& outer) {
        const auto& place = canvas.cursor;
        const bool isShown = place && place->x < canvas.cols() && place->y < canvas.rows();
        return isShown ? cursorText(place->x, place->y, place->style, outer) : "hidden";
    }
    std::string cursor(const OuterTerminal& outer) const {
        const auto [x, y] = terminal.getCursorLocation();
        return terminal.modes().cursorHidden ? "hidden" : cursorText(x, y, terminal.cursorStyle(), outer);
    }
    static std::string cursorText(int x, int y, CursorStyle style, const OuterTerminal& outer) {
        return fmt::format("{},{} style {}", x, y, outer.cursorStyles ? static_cast<int>(style) : 0);
    }
};

}  // namespace orvane::testing
