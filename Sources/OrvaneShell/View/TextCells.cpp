#include "OrvaneShell/View/TextCells.h"

#include <algorithm>
#include <utility>

#include "TerminalEmulator/Unicode/UnicodeUtil.h"
#include "TerminalEmulator/Unicode/Utf8Decoder.h"

namespace orvane {

namespace {

/// The cells of a text, scalar after scalar.
class CellRow {
 public:
    explicit CellRow(ClusterTable& clusters) : clusters_(clusters) {}

    void add(char32_t scalar) {
        if (UnicodeUtil::isControl(scalar)) return;
        if (joins(scalar)) {
            join(scalar);
            return;
        }
        const int width = UnicodeUtil::columnWidth(scalar);
        if (width == 0) return;
        cells.push_back({static_cast<std::int32_t>(scalar), width});
        columns += width;
    }

    std::vector<TextCell> cells;
    int columns = 0;

 private:
    bool joins(char32_t scalar) const {
        if (cells.empty()) return false;
        if (UnicodeUtil::joinsPrevious(scalar)) return true;
        const std::int32_t code = cells.back().code;
        const char32_t last = clusters_.lastScalar(code);
        if (last == UnicodeUtil::zeroWidthJoiner) return true;
        const bool isSecondIndicator = UnicodeUtil::isRegionalIndicator(scalar) &&
                                       UnicodeUtil::isRegionalIndicator(last) && CharData{.code = code}.isSimpleRune();
        return isSecondIndicator;
    }

    void join(char32_t scalar) {
        TextCell& cell = cells.back();
        cell.code = clusters_.joined(cell.code, scalar);
        if (!UnicodeUtil::isVariationBase(clusters_.baseScalar(cell.code))) return;
        columns -= cell.width;
        if (scalar == UnicodeUtil::emojiPresentation) cell.width = 2;
        if (scalar == UnicodeUtil::textPresentation) cell.width = 1;
        columns += cell.width;
    }

    ClusterTable& clusters_;
};

}  // namespace

std::vector<TextCell> textCells(std::string_view text, ClusterTable& clusters, int limit) {
    CellRow row(clusters);
    row.cells.reserve(std::min<std::size_t>(text.size(), static_cast<std::size_t>(std::max(limit, 0)) + 1));
    Utf8Decoder decoder;
    // By pieces, so that the rest of a very long text is not looked at.
    constexpr std::size_t pieceSize = 256;
    while (!text.empty() && row.columns <= limit) {
        const std::string_view piece = text.substr(0, pieceSize);
        decoder.decode(piece, [&](char32_t scalar) { row.add(scalar); });
        text.remove_prefix(piece.size());
    }
    if (text.empty()) decoder.finish([&](char32_t scalar) { row.add(scalar); });
    return std::move(row.cells);
}

}  // namespace orvane
