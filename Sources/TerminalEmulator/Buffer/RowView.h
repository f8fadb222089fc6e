#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "TerminalEmulator/Buffer/ClusterTable.h"
#include "TerminalEmulator/Buffer/StoredCell.h"

namespace orvane {

/// How DECDWL and DECDHL draw a row.
enum class RenderLineMode : std::uint8_t { single, doubleWidth, doubledTop, doubledDown };

/// Reading one row, of the screen or of the history. It looks into the buffer and is good until the buffer changes or,
/// for a row of the history, until 16 more of those are read.
class RowView {
 public:
    struct TextOptions {
        bool trimsRight = false;  ///< up to the last cell with a character
        int startCol = 0;
        int endCol = -1;                           ///< behind the last column; -1 for all
        bool skipsNullCellsFollowingWide = false;  ///< else the right half of a wide character reads as a space too
    };

    std::span<const StoredCell> cells;  ///< in use; those to the right, up to `cols`, are default blanks
    int cols = 0;
    bool isWrapped = false;  ///< continues the row above
    RenderLineMode renderMode = RenderLineMode::single;
    bool startsPrompt = false;  ///< the program said that a prompt of its begins in this row
    /// Two reads of a buffer with the same number show the same cells. A row that leaves the screen gets another one.
    std::uint64_t generation = 0;

    StoredCell at(int col) const {
        const auto index = static_cast<std::size_t>(col);  // a negative column lies beyond the end
        return index < cells.size() ? cells[index] : StoredCell{};
    }
    CharData charData(int col) const { return at(col).unpack(); }
    std::vector<CharData> getData() const;  ///< all `cols` cells

    /// The last column with a character plus that character's width; 0 for a row of empty cells.
    int getTrimmedLength() const;
    bool hasContent(int col) const;  ///< a character, or a look other than the default
    bool hasAnyContent() const;
    int getWidth(int col) const { return at(col).width(); }

    std::string translateToString(const ClusterTable& clusters, const TextOptions& options) const;
    std::string translateToString(const ClusterTable& clusters) const { return translateToString(clusters, {}); }
};

}  // namespace orvane
