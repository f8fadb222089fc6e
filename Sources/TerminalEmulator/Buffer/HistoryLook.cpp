#include "TerminalEmulator/Buffer/HistoryLook.h"

namespace orvane::HistoryLook {
namespace {

constexpr std::uint32_t indexed = 1;
constexpr std::uint32_t direct = 2;

std::uint32_t kind(std::uint32_t color) {
    return (color >> 24) & 3;
}

std::uint8_t* writeColor(std::uint32_t color, std::uint8_t* out) {
    if (kind(color) == direct) {
        *out++ = static_cast<std::uint8_t>(color >> 16);
        *out++ = static_cast<std::uint8_t>(color >> 8);
    }
    if (kind(color) == indexed || kind(color) == direct) *out++ = static_cast<std::uint8_t>(color);
    return out;
}

const std::uint8_t* readColor(std::uint32_t kind, const std::uint8_t* in, std::uint32_t& color) {
    color = kind << 24;
    if (kind == direct) {
        color |= static_cast<std::uint32_t>(in[0]) << 16 | static_cast<std::uint32_t>(in[1]) << 8;
        in += 2;
    }
    if (kind == indexed || kind == direct) color |= *in++;
    return in;
}

/// Underline style, protection and underline colour, gathered from the four words.
std::uint32_t moreOf(const StoredCell& cell) {
    const std::uint32_t color = (cell.foreground >> 29) << 22 | (cell.background >> 26) << 16 | cell.extra >> 16;
    return ((cell.foreground >> 26) & 7) | (cell.isProtected() ? 8U : 0U) | color << 4;
}

void spreadMore(std::uint32_t more, StoredCell& look) {
    const std::uint32_t color = more >> 4;
    look.foreground |= (more & 7) << 26 | (color >> 22) << 29;
    look.background |= ((color >> 16) & 0x3F) << 26;
    look.extra |= (color & 0xFFFF) << 16;
    if ((more & 8) != 0) look.text |= StoredCell::protectedBit;
}

}  // namespace

std::uint8_t* write(const StoredCell& cell, std::uint8_t* out) {
    const auto style = static_cast<std::uint8_t>(cell.text >> 24);
    const std::uint16_t payload = cell.payload().code;
    const std::uint32_t more = moreOf(cell);
    *out++ = static_cast<std::uint8_t>((style != 0 ? 1U : 0U) | kind(cell.foreground) << 1 |
                                       kind(cell.background) << 3 | (payload != 0 ? 32U : 0U) | (more != 0 ? 64U : 0U));
    if (style != 0) *out++ = style;
    out = writeColor(cell.foreground, out);
    out = writeColor(cell.background, out);
    if (payload != 0) {
        *out++ = static_cast<std::uint8_t>(payload >> 8);
        *out++ = static_cast<std::uint8_t>(payload);
    }
    return more != 0 ? writeVarint(more, out) : out;
}

const std::uint8_t* read(const std::uint8_t* in, StoredCell& look) {
    look = {};
    const std::uint32_t flags = *in++;
    if ((flags & 1) != 0) look.text = static_cast<std::uint32_t>(*in++) << 24;
    in = readColor((flags >> 1) & 3, in, look.foreground);
    in = readColor((flags >> 3) & 3, in, look.background);
    if ((flags & 32) != 0) {
        look.extra = static_cast<std::uint32_t>(in[0]) << 8 | in[1];
        in += 2;
    }
    if ((flags & 64) != 0) {
        std::uint32_t more = 0;
        in = readVarint(in, more);
        spreadMore(more, look);
    }
    return in;
}

std::uint8_t* writeVarint(std::uint32_t value, std::uint8_t* out) {
    for (; value >= 0x80; value >>= 7)
        *out++ = static_cast<std::uint8_t>(value | 0x80);
    *out++ = static_cast<std::uint8_t>(value);
    return out;
}

const std::uint8_t* readVarint(const std::uint8_t* in, std::uint32_t& value) {
    value = 0;
    for (unsigned shift = 0;; shift += 7) {
        const std::uint32_t byte = *in++;
        value |= (byte & 0x7F) << shift;
        if (byte < 0x80) return in;
    }
}

}  // namespace orvane::HistoryLook
