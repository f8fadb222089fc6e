#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "OrvaneShell/View/CellLook.h"
#include "OrvaneShell/View/OuterTerminal.h"
#include "OrvaneShell/View/RowScroll.h"
#include "TerminalEmulator/Buffer/ClusterTable.h"
#include "TerminalEmulator/Buffer/StoredCell.h"

namespace orvane {

/// The bytes of one frame after the other, and what they made of the terminal's state: where it writes next and how.
class FrameBytes {
 public:
    static constexpr int unknown = -1;

    std::string bytes;  ///< of this frame; its owner takes them away

    void setFeatures(const OuterTerminal& outer) { outer_ = outer; }

    /// Clears the screen of a terminal of which nothing is known.
    void startOver();

    /// Where the next character goes; `unknown` when terminals may differ about it.
    int x() const { return x_; }
    int y() const { return y_; }
    void forgetPosition() { x_ = unknown; }
    void moveTo(int x, int y);

    /// What is written from now on looks and links like this cell.
    void setLook(const StoredCell& cell);
    bool hasLook(const StoredCell& cell) const;
    void closeLink();

    /// Writes the character of a cell in the look that is set. Behind the last column the place is unknown.
    void write(const StoredCell& cell, const ClusterTable& clusters, int cols);
    void eraseToEndOfRow();
    void eraseCharacters(int count);
    /// Rows that become free are blank. Sets the look of blanks.
    void scroll(const RowScroll& scroll);

 private:
    static StoredCell lookOf(const StoredCell& cell);
    void control(int first, int second, char final);
    void openLink(TinyAtom link);

    OuterTerminal outer_;
    int x_ = unknown;
    int y_ = unknown;
    StoredCell source_;  ///< the look that is set, as cells have it
    CellLook look_;      ///< and as the terminal was told
    std::uint16_t link_ = 0;
};

}  // namespace orvane
