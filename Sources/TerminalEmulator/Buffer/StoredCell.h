#pragma once

#include <cstdint>

#include "TerminalEmulator/Buffer/CharData.h"

namespace orvane {

/// A cell as the screen keeps it: 16 bytes. All bits zero is the default blank, `CharData::Null`.
///
///     text        0-20 code   21-22 width (0 is one column, 1 the right half, 2 wide)   23 protected   24-31 style
///     foreground  0-23 value  24-25 kind of colour  26-28 underline style  29-31 underline colour, bits 22-24
///     background  0-23 value  24-25 kind of colour                         26-31 underline colour, bits 16-21
///     extra       0-15 payload                                             16-31 underline colour, bits 0-15
///
/// Handles of clusters follow the last code point of Unicode: 0x110000 is the first. An underline colour needs no table
/// of its own: 25 bits hold "none" (0), 256 indexed ones (1 to 256), the two default ones and, with bit 24, 24 of red,
/// green and blue.
struct alignas(16) StoredCell {
    static constexpr std::uint32_t codeMask = 0x1FFFFF;
    static constexpr std::uint32_t widthMask = 3U << 21;
    static constexpr std::uint32_t rightHalf = 1U << 21;
    static constexpr std::uint32_t wide = 2U << 21;
    static constexpr std::uint32_t protectedBit = 1U << 23;
    static constexpr std::uint32_t lookMask = ~(codeMask | widthMask);  ///< of `text`
    static constexpr std::uint32_t firstCluster = 0x110000;

    std::uint32_t text = 0;
    std::uint32_t foreground = 0;
    std::uint32_t background = 0;
    std::uint32_t extra = 0;

    static StoredCell pack(const CharData& cell);
    CharData unpack() const;

    /// What `text` holds for a code of `CharData`. Neither scalar nor handle gives a space.
    static constexpr std::uint32_t packedCode(std::int32_t code) {
        if (code >= 0 && code < 0x110000) return static_cast<std::uint32_t>(code);
        const std::int32_t cluster = code - CharData::clusterBase - 1;
        if (cluster < 0 || cluster > static_cast<std::int32_t>(codeMask - firstCluster)) return ' ';
        return firstCluster + static_cast<std::uint32_t>(cluster);
    }
    constexpr std::int32_t code() const {
        const std::uint32_t packed = text & codeMask;
        if (packed < firstCluster) return static_cast<std::int32_t>(packed);
        return CharData::clusterBase + 1 + static_cast<std::int32_t>(packed - firstCluster);
    }

    static constexpr std::uint32_t packedWidth(int width) { return width == 2 ? wide : width == 0 ? rightHalf : 0; }
    constexpr int width() const { return isWide() ? 2 : isRightHalf() ? 0 : 1; }
    constexpr bool isWide() const { return (text & widthMask) == wide; }
    constexpr bool isRightHalf() const { return (text & widthMask) == rightHalf; }

    constexpr bool isEmpty() const { return (text & codeMask) == 0; }  ///< holds no character
    constexpr bool isDefaultBlank() const { return (text | foreground | background | extra) == 0; }
    constexpr bool isProtected() const { return (text & protectedBit) != 0; }
    constexpr TinyAtom payload() const { return {static_cast<std::uint16_t>(extra)}; }

    /// The same look (and payload, and protection) with another character.
    constexpr StoredCell with(std::int32_t code, int width) const {
        return {(text & lookMask) | packedCode(code) | packedWidth(width), foreground, background, extra};
    }
    /// The same look without a character.
    constexpr StoredCell emptied() const { return {text & lookMask, foreground, background, extra}; }

    bool operator==(const StoredCell&) const = default;
};

static_assert(sizeof(StoredCell) == 16);

}  // namespace orvane
