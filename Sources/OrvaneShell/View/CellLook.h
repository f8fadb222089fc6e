#pragma once

#include <cstdint>
#include <string>

#include "OrvaneShell/View/OuterTerminal.h"
#include "TerminalEmulator/Buffer/StoredCell.h"

namespace orvane {

/// A look as SGR sets it in a certain terminal: what that terminal lacks is replaced by the nearest that it has.
struct CellLook {
    std::uint32_t foreground = 0;  ///< 26 bits, as `CellColor` packs them
    std::uint32_t background = 0;
    std::uint32_t underlineColor = 0;  ///< 25 bits; 0 for that of the text
    std::uint8_t underline = 0;        ///< value of `Attribute::UnderlineStyle`
    std::uint8_t style = 0;            ///< bits of `Attribute::CharacterStyle` but underline

    static CellLook of(const StoredCell& cell, const OuterTerminal& outer);

    bool operator==(const CellLook&) const = default;
};

/// Appends the shortest SGR that changes one look into another one; nothing when they are equal.
void appendSgr(const CellLook& from, const CellLook& to, std::string& out);

}  // namespace orvane
