#include "OrvaneShell/View/FrameCells.h"

#include <string>
#include <utility>
#include <vector>

#include "OrvaneShell/View/TextCells.h"
#include "TerminalEmulator/Unicode/UnicodeUtil.h"
#include "TerminalEmulator/Unicode/Utf8Decoder.h"
#include "TerminalEmulator/Unicode/Utf8Encoder.h"

namespace orvane {

namespace {

constexpr std::int32_t manyClusters = 8192;
constexpr int manyHolds = 1024;
constexpr std::uint32_t payloadMask = 0xFFFF;

bool isPlainAscii(const StoredCell& cell) {
    const std::uint32_t codeAndWidth = cell.text & (StoredCell::codeMask | StoredCell::widthMask);
    return codeAndWidth >= ' ' && codeAndWidth < 0x7F;
}

/// They would turn round what stands beside the cell, in terminals that follow them.
bool isDirectionControl(char32_t scalar) {
    return (scalar >= 0x202A && scalar <= 0x202E) || (scalar >= 0x2066 && scalar <= 0x2069);
}

constexpr std::int32_t replacement = static_cast<std::int32_t>(Utf8Decoder::replacementCharacter);

/// What is written for a character on its own. A lone regional indicator would make a flag with the next one: its
/// letter is shown.
TextCell cleanScalar(std::int32_t code) {
    const auto scalar = static_cast<char32_t>(code);
    if (scalar > 0x10FFFF || (scalar >= 0xD800 && scalar <= 0xDFFF) || UnicodeUtil::isControl(scalar)) return {' ', 1};
    if (UnicodeUtil::isRegionalIndicator(scalar)) return {static_cast<std::int32_t>(scalar - 0x1F1E6 + 'A'), 1};
    const int width = UnicodeUtil::columnWidth(scalar);
    return width == 0 || UnicodeUtil::joinsPrevious(scalar) ? TextCell{replacement, 1} : TextCell{code, width};
}

/// Without what steers, and without joiners that wait for another emoji.
std::string withoutLooseEnds(std::string_view cluster) {
    std::string text;
    std::size_t end = 0;
    Utf8Decoder decoder;
    decoder.decode(cluster, [&](char32_t scalar) {
        if (UnicodeUtil::isControl(scalar) || isDirectionControl(scalar)) return;
        appendUtf8(scalar, text);
        if (scalar != UnicodeUtil::zeroWidthJoiner) end = text.size();
    });
    text.resize(end);
    return text;
}

}  // namespace

FrameCells::Content FrameCells::read(const Canvas& canvas, int y, FrameLinks links, std::span<StoredCell> out) {
    const auto row = canvas.row(y);
    Content content = Content::plain;
    known_ = {};
    for (std::size_t x = 0; x < row.size(); ++x) {
        StoredCell& cell = out[x];
        cell = row[x];
        cell.text &= ~StoredCell::protectedBit;
        if (links == FrameLinks::dropped) cell.extra &= ~payloadMask;
        if ((cell.extra & payloadMask) != 0) hold(cell);
        if (isPlainAscii(cell)) continue;
        if (cell.isRightHalf()) {
            cell = x > 0 && out[x - 1].isWide() ? out[x - 1].with(0, 0) : cell.with(' ', 1);
            continue;
        }
        const bool isHalfMissing = cell.isWide() && (x + 1 == row.size() || !row[x + 1].isRightHalf());
        const std::int32_t code = isHalfMissing ? ' ' : cell.code();
        if (code >= CharData::clusterBase) content = Content::clusters;
        const TextCell clean = code < CharData::clusterBase ? cleanScalar(code) : cleanCluster(canvas.clusters(), code);
        cell = fitted(cell, clean, x + 1 == row.size());
        if (glyphs_ != GlyphSet::all) cell = plain(cell);
    }
    return content;
}

/// The character in the columns of a cell. A narrow one takes no wide character: it would run over the next cell, or,
/// where there is none, be moved.
StoredCell FrameCells::fitted(const StoredCell& cell, const TextCell& character, bool isLast) const {
    if (cell.isWide()) return cell.with(character.code, character.code == ' ' ? 1 : character.width);
    const auto base = clusters_.baseScalar(character.code);
    const bool isBaseWide = UnicodeUtil::columnWidth(base) == 2;
    if (character.width == 1 && !(isBaseWide && isLast)) return cell.with(character.code, 1);
    return cell.with(isBaseWide ? replacement : static_cast<std::int32_t>(base), 1);
}

/// A character in the glyphs that there are. One that is replaced takes a single column, and the other half of a wide
/// one is blank.
StoredCell FrameCells::plain(const StoredCell& cell) const {
    const char32_t base = clusters_.baseScalar(cell.code());
    const char32_t glyph = glyphIn(glyphs_, base);
    const bool isKept = glyph == base && (glyphs_ == GlyphSet::console || cell.code() < CharData::clusterBase);
    return isKept ? cell : cell.with(static_cast<std::int32_t>(glyph), 1);
}

TextCell FrameCells::cleanCluster(const ClusterTable& from, std::int32_t code) {
    Known& known = known_[static_cast<std::size_t>(code) % known_.size()];
    if (known.from != code) known = {code, cleanCluster(from.indexToChar(code))};
    return known.to;
}

TextCell FrameCells::cleanCluster(std::string_view text) {
    const std::vector<TextCell> cells = textCells(withoutLooseEnds(text), clusters_, 2);
    if (cells.empty()) return {' ', 1};
    const auto base = static_cast<std::int32_t>(clusters_.baseScalar(cells[0].code));
    const bool isFlag = UnicodeUtil::isRegionalIndicator(static_cast<char32_t>(base));
    if (cells[0].code < CharData::clusterBase) return cleanScalar(base);
    return isFlag || cleanScalar(base).code == base ? cells[0] : cleanScalar(base);
}

/// The handle of a text that has one is found always; nothing is given back for it.
void FrameCells::hold(StoredCell& cell) {
    if (cell.payload().code == lastHeld_) return;
    const std::string* text = cell.payload().target();
    if (text == nullptr) {
        cell.extra &= ~payloadMask;
        return;
    }
    lastHeld_ = links_
                    .hold(*text,
                          [](PayloadSet& all) {
                              for (std::size_t code = 1; code <= TinyAtom::maximumHandles; ++code)
                                  all.insert(static_cast<std::uint16_t>(code));
                          })
                    .code;
    ++holds_;
}

void FrameCells::tidy(std::span<StoredCell> shown) {
    if (holds_ > manyHolds) {
        links_.collect([&](PayloadSet& inUse) {
            for (const StoredCell& cell : shown)
                inUse.insert(cell.payload().code);
        });
        holds_ = 0;
        lastHeld_ = 0;
    }
    if (clusters_.lastCharIndex() - ClusterTable::firstHandle < manyClusters) return;
    ClusterTable fresh;
    for (StoredCell& cell : shown) {
        if (cell.code() < CharData::clusterBase) continue;
        cell = cell.with(fresh.charToIndex(clusters_.indexToChar(cell.code())), cell.width());
    }
    clusters_ = std::move(fresh);
}

}  // namespace orvane
