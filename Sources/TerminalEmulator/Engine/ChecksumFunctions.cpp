#include "TerminalEmulator/Engine/ChecksumFunctions.h"

#include <fmt/format.h>

#include <cstdint>

#include "TerminalEmulator/Engine/RectangleFunctions.h"
#include "TerminalEmulator/Unicode/Utf8Decoder.h"

namespace orvane::ChecksumFunctions {
namespace {

// The bits of XTCHECKSUM.
constexpr int notNegated = 1;
constexpr int withoutAttributes = 2;
constexpr int withBlanks = 4;
constexpr int withoutErased = 8;
constexpr int wholeCharacters = 16;
constexpr int ofEightBits = 32;
constexpr int allBits = 63;

std::uint32_t attributeWeight(const CharData& cell) {
    using Style = Attribute::CharacterStyle;
    const auto weight = [&](Style style, std::uint32_t value) {
        return (cell.attribute.style & style) != Style::none ? value : 0;
    };
    return (cell.isProtected ? 0x04U : 0U) + weight(Style::invisible, 0x08) + weight(Style::underline, 0x10) +
           weight(Style::inverse, 0x20) + weight(Style::blink, 0x40) + weight(Style::bold, 0x80);
}

/// As DEC's terminals count characters: by their lower 7 bits, or 8; or else all of a cluster.
std::uint32_t characterSum(const TerminalState& state, std::int32_t code, int extension) {
    if ((extension & wholeCharacters) == 0)
        return state.clusters.baseScalar(code) & ((extension & ofEightBits) != 0 ? 0xFFU : 0x7FU);
    std::uint32_t sum = 0;
    Utf8Decoder decoder;
    decoder.decode(state.clusters.text(code), [&](char32_t scalar) { sum += scalar; });
    return sum;
}

/// Plain blanks count only in front of something else in their row, or as the first cell of the area.
std::uint32_t checksum(const TerminalState& state, const RectangleFunctions::Area& area) {
    const int extension = state.checksumExtension;
    std::uint32_t sum = 0;
    for (int y = area.top; y <= area.bottom; ++y) {
        std::uint32_t blanks = 0;
        for (int col = area.left; col <= area.right; ++col) {
            const CharData cell = state.buffer->line(y).at(col).unpack();
            const bool isErased = cell.code == 0 && cell.width != 0;
            if (cell.width == 0 || (isErased && (extension & withoutErased) != 0)) continue;
            const std::uint32_t weight = (extension & withoutAttributes) != 0 ? 0 : attributeWeight(cell);
            const std::uint32_t value = weight + characterSum(state, isErased ? ' ' : cell.code, extension);
            const bool isFirst = y == area.top && col == area.left;
            if (value == ' ' && !isFirst && (extension & withBlanks) == 0) {
                blanks += value;
            } else {
                sum += value + blanks;
                blanks = 0;
            }
        }
    }
    return (extension & notNegated) != 0 ? sum : 0U - sum;
}

}  // namespace

void report(TerminalState& state, const ParserParameters& parameters) {
    const auto area = RectangleFunctions::areaOf(state, parameters, 2);
    const bool isTold = area && state.delegate.isProcessTrusted();
    const std::uint32_t sum = isTold ? checksum(state, *area) : 0;
    state.sendDcs(fmt::format("{}!~{:04X}", parameters.values[0], sum & 0xFFFF));
}

void selectExtension(TerminalState& state, const ParserParameters& parameters) {
    state.checksumExtension = parameters.values[0] & allBits;
}

}  // namespace orvane::ChecksumFunctions
