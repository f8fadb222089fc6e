#include "TerminalEmulator/Buffer/StoredCell.h"

#include "TerminalEmulator/Buffer/CellColor.h"
#include "TerminalEmulator/Buffer/Pen.h"

namespace orvane {

StoredCell StoredCell::pack(const CharData& cell) {
    Pen pen(cell.attribute, cell.payload);
    pen.setIsProtected(cell.isProtected);
    return pen.cell().with(cell.code, cell.width);
}

CharData StoredCell::unpack() const {
    const std::uint32_t underline = (foreground >> 29) << 22 | (background >> 26) << 16 | extra >> 16;
    return {
        .code = code(),
        .width = static_cast<std::int8_t>(width()),
        .payload = payload(),
        .isProtected = isProtected(),
        .attribute = {.fg = CellColor::unpacked(foreground),
                      .bg = CellColor::unpacked(background),
                      .style = static_cast<Attribute::CharacterStyle>(text >> 24),
                      .underlineStyle = static_cast<Attribute::UnderlineStyle>((foreground >> 26) & 7),
                      .underlineColor = CellColor::unpackedUnderline(underline)},
    };
}

}  // namespace orvane
