#pragma once

#include <cstddef>
#include <cstdint>

#include "TerminalEmulator/Buffer/StoredCell.h"

/// The look of a run of cells as bytes, 1 for the default one and at most 15.
///
///     flags  bit 0 style, bits 1-2 kind of the foreground, 3-4 of the background, 5 payload, 6 more
///     style 1 byte; each colour 0, 1 or 3 bytes by its kind; payload 2 bytes
///     more   varint: bits 0-2 underline style, 3 protected, 4-28 underline colour
namespace orvane::HistoryLook {

constexpr std::size_t maximumBytes = 15;

inline bool isSame(const StoredCell& a, const StoredCell& b) {
    return (((a.text ^ b.text) & StoredCell::lookMask) | (a.foreground ^ b.foreground) | (a.background ^ b.background) |
            (a.extra ^ b.extra)) == 0;
}

/// Write and read give back where they stopped.
std::uint8_t* write(const StoredCell& cell, std::uint8_t* out);
const std::uint8_t* read(const std::uint8_t* in, StoredCell& look);

std::uint8_t* writeVarint(std::uint32_t value, std::uint8_t* out);
const std::uint8_t* readVarint(const std::uint8_t* in, std::uint32_t& value);

}  // namespace orvane::HistoryLook
