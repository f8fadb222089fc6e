#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "TerminalEmulator/Buffer/Buffer.h"
#include "TerminalEmulator/Position.h"

namespace orvane {

/// Where a cursor that reads goes in the text of a buffer, as the keys of vi have it. Rows that are joined by wrapping
/// are one line. Positions are cells of the ring, and where there is no way to go the cursor stays.
class TextMotion {
 public:
    /// What a word is: a run of letters, digits and underscores or one of other signs, or all between blanks.
    enum class Words : std::uint8_t { plain, betweenBlanks };

    /// Both must outlive it.
    TextMotion(const Buffer& buffer, const ClusterTable& clusters) : buffer_(buffer), clusters_(clusters) {}

    // By a character, on to the next row at the end of one.
    Position left(Position at) const;
    Position right(Position at) const;

    // By words. Forward ends on the last character of the text when no word follows.
    Position wordForward(Position at, Words words) const;
    Position wordEnd(Position at, Words words) const;
    Position wordBack(Position at, Words words) const;
    /// The name (letters, digits, underscores) at the cell, or else the next one in its line; empty without one.
    std::string nameAt(Position at) const;

    // Within a line.
    Position lineStart(Position at) const;
    Position lineText(Position at) const;  ///< its first character that is no blank
    Position lineEnd(Position at) const;

    // Rows.
    Position paragraphUp(Position at) const;  ///< to the blank row before the text, or the first
    Position paragraphDown(Position at) const;
    /// The next row that a prompt begins in, above or below; none when the program has marked none there.
    std::optional<Position> promptAbove(Position at) const;
    std::optional<Position> promptBelow(Position at) const;

    /// The column of the last character of a row, 0 for an empty one.
    int lastCol(int row) const;
    /// The last row that is not blank, 0 if all are.
    int lastTextRow() const;

 private:
    enum class Kind : std::uint8_t { blank, name, sign };
    struct Step {
        Position at;
        bool isOtherLine = false;
    };

    Kind kindAt(Position at, Words words) const;
    std::optional<Step> after(Position at) const;
    std::optional<Step> before(Position at) const;
    bool isBlank(int row) const;

    const Buffer& buffer_;
    const ClusterTable& clusters_;
};

}  // namespace orvane
