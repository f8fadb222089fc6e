#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "TerminalEmulator/Buffer/StoredCell.h"

/// A row of the history as bytes: its text, then runs of equal looks.
///
///     head   1 byte: bit 0 every cell is one byte of text, bit 1 runs follow, bit 2 a count of cells follows
///     count  varint, present when there are other cells than the entry of the page says
///     text   per cell   00-7F           an empty cell, ASCII
///                       01 n            n empty cells, in rows without bit 0
///                       80-BF b         14 bits of code
///                       C0-DF b b       21 bits of code
///                       E0-FF b b       21 bits of a wide character; its right half is not written
///     runs   varint of cells, then the look (`HistoryLook`), until all cells are covered; without runs every look is
///            the default one
///
/// A log line of 96 characters takes 97 bytes; one of two characters 3.
namespace orvane::HistoryCodec {

struct Packed {
    std::span<const std::uint8_t> bytes;  ///< in the scratch memory that the encoder was given
    bool hasWide = false;
    bool hasPayload = false;
};

/// `cells` are those to keep; the decoder is told `expected`, the number that the page knows anyway. Halves of wide
/// characters that stand alone become empty cells. `scratch` only ever grows.
Packed encode(std::span<const StoredCell> cells, std::uint32_t expected, std::vector<std::uint8_t>& scratch);

/// Appends the cells of a row to `out`.
void decode(const std::uint8_t* row, std::uint32_t expected, std::vector<StoredCell>& out);

/// How many of the row's cells from `from` on have room in `room` columns. A wide character counts whole.
std::uint32_t cellsThatFit(const std::uint8_t* row, std::uint32_t expected, std::uint32_t from, std::uint32_t room);

/// Lays out cells `from` to `expected` in rows of `cols` columns, 2 at least. The first row has `column` of them in use
/// already. Gives back how many further rows they take and leaves in `column` what is in use of the last.
std::uint32_t rowsTaken(const std::uint8_t* row, std::uint32_t expected, std::uint32_t from, std::uint32_t cols,
                        std::uint32_t& column);

}  // namespace orvane::HistoryCodec
