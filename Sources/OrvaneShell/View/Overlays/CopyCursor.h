#pragma once

#include <cstdint>
#include <optional>

#include "TerminalEmulator/Terminal.h"

namespace orvane {

/// Where the keys of the copy mode take its cursor.
enum class CopyMotion : std::uint8_t {
    // clang-format off
    left, right, up, down, wordForward, wordEnd, wordBack, longWordForward, longWordEnd, longWordBack,
    lineStart, lineText, lineEnd, oldest, newest, top, middle, bottom,
    pageUp, pageDown, halfPageUp, halfPageDown, scrollUp, scrollDown, paragraphUp, paragraphDown,
    // clang-format on
};

/// The cursor of the copy mode. It stays with its text while rows come in below and fall off above, and the view of the
/// terminal goes along with it. The terminal is always the one that it began on.
class CopyCursor {
 public:
    /// Where the program's cursor is, if that shows, else in the last row that does.
    explicit CopyCursor(const Terminal& terminal);

    Position at(const Terminal& terminal) const;
    /// To a cell, which is brought into sight with as little scrolling as it takes.
    void place(Terminal& terminal, Position at);
    /// The same, in the middle of the view when it was out of sight, or in its top row.
    enum class Sight : std::uint8_t { middle, top };
    void jump(Terminal& terminal, Position at, Sight sight = Sight::middle);

    enum class Columns : std::uint8_t { ofText, all };  ///< all also lets it stand behind the end of a row
    void move(Terminal& terminal, CopyMotion motion, Columns columns = Columns::ofText);
    /// Scrolls the view, up when negative, and keeps the cursor in it.
    void scroll(Terminal& terminal, int rows, Columns columns = Columns::ofText);

 private:
    void remember(const Terminal& terminal, Position at);
    void reveal(Terminal& terminal);
    void toRow(Terminal& terminal, int row, Columns columns);
    void page(Terminal& terminal, int rows, Columns columns);
    bool moveRows(Terminal& terminal, CopyMotion motion, Columns columns);

    std::int64_t row_ = 0;  ///< of the ring plus `Buffer::linesTop`
    int col_ = 0;
    int wishedCol_ = 0;  ///< that going up and down comes back to
};

}  // namespace orvane
