#pragma once

#include <cstddef>
#include <string>

#include "TerminalEmulator/Buffer/Buffer.h"
#include "TerminalEmulator/Position.h"

namespace orvane {

/// Finds the cells that bytes of a logical line's text came from. It walks along the line once, so offsets must not
/// decrease from call to call; only lines with hits are ever walked.
class LineOffsetMapper {
 public:
    /// `firstRow` is the ring row at which the line starts. Nothing may change while the mapper is in use.
    LineOffsetMapper(const Buffer& buffer, const ClusterTable& clusters, int firstRow)
        : buffer_(buffer), clusters_(clusters), cell_{.row = firstRow} {}

    /// The cell that shows the byte; it must be one of the line.
    Position cellAt(std::size_t offset);
    /// The column behind the cell that shows the byte before `offset`, in that cell's row.
    Position behind(std::size_t offset);

 private:
    const Buffer& buffer_;
    const ClusterTable& clusters_;
    Position cell_;
    std::size_t offset_ = 0;  ///< of the cell's first byte
    std::string scratch_;
};

}  // namespace orvane
