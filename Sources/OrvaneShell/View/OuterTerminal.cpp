#include "OrvaneShell/View/OuterTerminal.h"

#include <algorithm>
#include <cctype>
#include <iterator>
#include <string>

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

/// The console of Linux asks a program of its own for the mouse.
constexpr OuterTerminal console{.plainGlyphs = GlyphSet::console, .mouse = false, .eraseCharacters = true};

/// Terminals of DEC, or what calls itself one.
constexpr OuterTerminal vt220{
    .colors = Colors::none, .plainGlyphs = GlyphSet::console, .mouse = false, .eraseCharacters = true};
constexpr OuterTerminal vt100{.colors = Colors::none, .plainGlyphs = GlyphSet::console, .mouse = false};

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
    {"vte", xtermLike},
    {"linux", console},
    {"vt1", vt100},
    {"vt", vt220},
    {"dumb", {.positionsCursor = false}},
    {"unknown", {.positionsCursor = false}},
    {"", {.eraseCharacters = true}},
};

Colors colorsByName(std::string_view term, Colors otherwise) {
    if (term.ends_with("-direct")) return Colors::direct;
    if (term.ends_with("-m") || term.ends_with("-mono")) return Colors::none;
    if (term.ends_with("-color") || term.ends_with("-16color")) return std::max(otherwise, Colors::sixteen);
    return term.ends_with("-256color") ? std::max(otherwise, Colors::indexed) : otherwise;
}

/// "de_DE.UTF-8", "C.utf8"; what stands behind "@" does not count.
bool isUtf8(std::string_view locale) {
    std::string codeset(locale.substr(0, locale.find('@')));
    std::ranges::transform(codeset, codeset.begin(),
                           [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return codeset.ends_with("utf-8") || codeset.ends_with("utf8");
}

}  // namespace

OuterTerminal OuterTerminal::of(std::string_view term, std::string_view colorTerm, bool insideTmux,
                                std::string_view locale) {
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
    if (!isInherited && !colorTerm.empty()) result.colors = std::max(result.colors, Colors::sixteen);
    if (!locale.empty() && !isUtf8(locale)) result.plainGlyphs = GlyphSet::ascii;
    return result;
}

}  // namespace orvane
