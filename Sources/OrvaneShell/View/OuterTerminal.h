#pragma once

#include <cstdint>
#include <string_view>

#include "OrvaneShell/View/GlyphSet.h"

namespace orvane {

/// What the terminal of a client can do. What is not known of it counts as missing, where it would do harm.
struct OuterTerminal {
    enum class Colors : std::uint8_t { none, sixteen, indexed, direct };

    Colors colors = Colors::sixteen;
    /// What its font and the locale of the client have no sign for is shown by one that they have.
    GlyphSet plainGlyphs = GlyphSet::all;
    bool mouse = true;                ///< DECSET 1002 and 1006
    bool positionsCursor = true;      ///< without it nothing can be drawn
    bool synchronizedOutput = false;  ///< DECSET 2026: shows what comes between set and reset at once
    bool styledUnderlines = false;    ///< SGR 4:3 and the like, and 58 for their colour
    bool hyperlinks = false;          ///< OSC 8
    bool cursorStyles = false;        ///< DECSCUSR; terminals of the Linux console's kind print its last letter
    bool eraseCharacters = false;     ///< ECH, which came with the VT220
    /// Characters that Unicode calls ambiguous may take two columns, as in some East Asian settings.
    bool wideAmbiguous = false;

    /// From the variables TERM and COLORTERM, before the terminal has answered anything. `insideTmux` means that TMUX
    /// is set: tmux turns what its own terminal lacks into something that it has. `locale` is that of characters; where
    /// none is set ("") UTF-8 is taken for granted.
    static OuterTerminal of(std::string_view term, std::string_view colorTerm, bool insideTmux,
                            std::string_view locale = {});

    bool operator==(const OuterTerminal&) const = default;
};

}  // namespace orvane
