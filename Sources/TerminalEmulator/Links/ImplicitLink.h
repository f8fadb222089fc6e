#pragma once

#include <optional>

#include "TerminalEmulator/Buffer/Buffer.h"
#include "TerminalEmulator/Links/LinkMatch.h"
#include "TerminalEmulator/Position.h"

namespace orvane {

/// The address in the text that a cell is part of. `at` must be a cell of the buffer.
std::optional<LinkMatch> implicitLink(const Buffer& buffer, const ClusterTable& clusters, Position at);

}  // namespace orvane
