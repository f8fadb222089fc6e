#include "OrvaneShell/View/OuterTerminal.h"

#include <algorithm>
#include <iterator>

namespace orvane {

namespace {

using Colors = OuterTerminal::Colors;

struct Kind {
    std::string_view name;  ///< what TERM begins with
    OuterTerminal features;
};

constexpr OuterTerminal modern{.colors = Colors::direct,
                               .synchronizedOutput = true,
                               .styledUnderlines = true,
                               .hyperlinks = true,
                               .cursorStyles = true,
                               .eraseCharacters = true};

/// What calls itself xterm is many things; sequences that all of them at least skip are taken for granted.
constexpr OuterTerminal xtermLike{.hyperlinks = true, .cursorStyles = true, .eraseCharacters = true};

/// The first that fits counts.
constexpr Kind kinds[] = {
    {"xterm-kitty", modern},
    {"foot", modern},
    {"alacritty", modern},
    {"wezterm", modern},
    {"xterm", xtermLike},
    {"rxvt", {.cursorStyles = true, .eraseCharacters = true}},
    {"tmux", {.colors = Colors::indexed, .cursorStyles = true, .eraseCharacters = true}},
    {"screen", {.cursorStyles = true, .eraseCharacters = true}},
    {"linux", {.eraseCharacters = true}},
    {"vt220", {.eraseCharacters = true}},
    {"vt", {}},
    {"dumb", {.positionsCursor = false}},
    {"unknown", {.positionsCursor = false}},
    {"", {.eraseCharacters = true}},
};

Colors colorsByName(std::string_view term, Colors otherwise) {
    if (term.ends_with("-direct")) return Colors::direct;
    return term.ends_with("-256color") ? std::max(otherwise, Colors::indexed) : otherwise;
}

}  // namespace

OuterTerminal OuterTerminal::of(std::string_view term, std::string_view colorTerm, bool insideTmux) {
    if (term.empty()) return {.positionsCursor = false};
    const auto* const kind = std::ranges::find_if(kinds, [&](const Kind& row) { return term.starts_with(row.name); });
    OuterTerminal result = kind->features;
    result.colors = colorsByName(term, result.colors);
    if (insideTmux) {
        result.styledUnderlines = true;
        result.hyperlinks = true;
    }
    // COLORTERM is inherited: by the multiplexer that reads direct colours as something else, and by a login on the
    // console.
    const bool isInherited = (term.starts_with("screen") && !insideTmux) || term == "linux" || !result.positionsCursor;
    if (!isInherited && (colorTerm == "truecolor" || colorTerm == "24bit")) result.colors = Colors::direct;
    return result;
}

}  // namespace orvane
