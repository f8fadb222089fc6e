#pragma once

#include <string>

#include "TerminalEmulator/Buffer/Buffer.h"
#include "TerminalEmulator/ColumnRange.h"
#include "TerminalEmulator/Position.h"

namespace orvane {

/// Which rows round a cell may hold one address: those that the wrap flag joins, and those of a program that breaks
/// long addresses by itself, within a box or behind an indent, as programs that draw their whole screen do.
///
/// The second kind can only be guessed. Rows are taken as one when the upper one is filled to its right end with what
/// addresses are made of and the lower one starts at the same column with what can be the rest of one: not with an
/// address of its own, not with a list's mark, and not with a plain word that others follow.
class ImplicitRows {
 public:
    static constexpr int maximumRows = 64;  ///< that are looked at above and below

    /// Rows from the first to the last.
    struct Group {
        int first = 0;
        int last = 0;
    };

    /// `at` must be a cell of the buffer. Nothing may change while this is in use.
    ImplicitRows(const Buffer& buffer, const ClusterTable& clusters, Position at);

    /// All rows that belong to the one of the cell. Rows that are joined without holding an address do no harm: none is
    /// found in them.
    Group heuristicImplicitGroup() const;
    /// The columns of a row of the group that are part of the joined text.
    ColumnRange textCols(int row, const Group& group) const;

    bool isWrapJoined(int upper) const;             ///< with the row below, by the flag
    bool canJoinImplicitRows(int upper) const;      ///< with the row below, by their looks
    bool isImplicitContinuationRow(int row) const;  ///< either of the row above

 private:
    /// What stands in a row between the sides of the box.
    struct Shape {
        std::u32string text;  ///< one element a column; a wide character stands in both of its own
        int start = 0;        ///< column of the first character behind the indent and a list's mark
        int end = 0;          ///< behind the last character
        bool hasMark = false;
        char32_t at(int col) const;
        std::u32string lastRun() const;
        std::u32string firstRun() const;
    };

    ColumnRange boxAround(Position at) const;
    bool hasBox() const { return box_.startCol > 0 || box_.endCol < buffer_.cols(); }
    char32_t scalarAt(Position at) const;
    Shape shapeOf(int row) const;
    bool isFilled(const Shape& shape) const;
    static bool mayBeRest(const Shape& lower, bool isUpperFull);

    const Buffer& buffer_;
    const ClusterTable& clusters_;
    Position at_;
    ColumnRange box_;  ///< between the sides, which are not in it
};

}  // namespace orvane
