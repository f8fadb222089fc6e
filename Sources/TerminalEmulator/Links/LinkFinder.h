#pragma once

#include <optional>

#include "TerminalEmulator/Buffer/Buffer.h"
#include "TerminalEmulator/Links/LinkMatch.h"
#include "TerminalEmulator/Position.h"

namespace orvane {

/// Tells which link a cell is part of. It keeps nothing but the buffer it looks at; a match is good until that changes.
class LinkFinder {
 public:
    /// Both must outlive the finder.
    LinkFinder(const Buffer& buffer, const ClusterTable& clusters) : buffer_(&buffer), clusters_(clusters) {}

    void setBuffer(const Buffer& buffer) { buffer_ = &buffer; }

    /// `at` is a cell of the ring; nothing for a place that there is not. A marked link goes before an address in the
    /// text.
    std::optional<LinkMatch> link(Position at, LinkMode mode) const;

 private:
    const Buffer* buffer_;
    const ClusterTable& clusters_;
};

}  // namespace orvane
