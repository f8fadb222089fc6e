#include "OrvaneShell/View/DisputedWidth.h"

#include "TerminalEmulator/Unicode/UnicodeUtil.h"
#include "TerminalEmulator/Unicode/Utf8Decoder.h"

namespace orvane {

namespace {

bool isPrivateUse(char32_t scalar) {
    return (scalar >= 0xE000 && scalar <= 0xF8FF) || scalar >= 0xF0000;
}

/// Emoji and pictographs of plane 1; all that came after the tables of many a terminal is among them.
bool isPictograph(char32_t scalar) {
    return scalar >= 0x1F000 && scalar < 0x20000;
}

bool isSingleDisputed(char32_t scalar, int width, const OuterTerminal& outer) {
    if (outer.wideAmbiguous && width == 1) return true;
    if (isPrivateUse(scalar) || isPictograph(scalar)) return true;
    return UnicodeUtil::columnWidth(scalar) != width || (scalar > 0xFF && UnicodeUtil::isVariationBase(scalar));
}

bool isPlainMark(char32_t scalar) {
    const bool changesEmoji = scalar == UnicodeUtil::zeroWidthJoiner || scalar == UnicodeUtil::textPresentation ||
                              scalar == UnicodeUtil::emojiPresentation || UnicodeUtil::isEmojiModifier(scalar);
    return !changesEmoji && UnicodeUtil::joinsPrevious(scalar);
}

}  // namespace

bool isWidthDisputed(const StoredCell& cell, const ClusterTable& clusters, const OuterTerminal& outer) {
    const std::int32_t code = cell.code();
    if (code < 0x80) return cell.isWide();
    if (code < CharData::clusterBase) return isSingleDisputed(static_cast<char32_t>(code), cell.width(), outer);
    bool isBase = true;
    bool isDisputed = false;
    Utf8Decoder decoder;
    decoder.decode(clusters.indexToChar(code), [&](char32_t scalar) {
        isDisputed |= isBase ? isSingleDisputed(scalar, cell.width(), outer) : !isPlainMark(scalar);
        isBase = false;
    });
    return isDisputed;
}

}  // namespace orvane
