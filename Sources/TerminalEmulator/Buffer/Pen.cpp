#include "TerminalEmulator/Buffer/Pen.h"

#include "TerminalEmulator/Buffer/CellColor.h"

namespace orvane {

Pen::Pen(const Attribute& attribute, TinyAtom payload) {
    setAttribute(attribute);
    setPayload(payload);
}

void Pen::setAttribute(const Attribute& attribute) {
    resetAttribute();
    setForeground(attribute.fg);
    setBackground(attribute.bg);
    addStyle(attribute.style);
    setUnderlineStyle(attribute.underlineStyle);
    setUnderlineColor(attribute.underlineColor);
}

void Pen::setForeground(const Attribute::Color& color) {
    setForegroundBits(CellColor::packed(color));
}

void Pen::setBackground(const Attribute::Color& color) {
    setBackgroundBits(CellColor::packed(color));
}

void Pen::setUnderlineColor(const std::optional<Attribute::Color>& color) {
    const std::uint32_t bits = CellColor::packedUnderline(color);
    cell_.foreground = (cell_.foreground & ~(7U << 29)) | (bits >> 22) << 29;
    cell_.background = (cell_.background & colorMask) | ((bits >> 16) & 0x3F) << 26;
    cell_.extra = (cell_.extra & payloadMask) | (bits & 0xFFFF) << 16;
}

}  // namespace orvane
