#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "Terminal/Script.h"

namespace orvane::benchmark {

/// What decides how many times as fast as the peer we want to be.
enum class WorkloadKind : std::uint8_t {
    mixed,
    lines,       ///< hardly more than text and line ends: logs and long lines
    attributes,  ///< every cell changes its attributes
};

/// Whether the peer shows the same text in the end; where it should not, it lacks what the workload uses.
enum class PeerScreen : std::uint8_t { same, different };

/// One kind of program, as the bytes that it writes.
struct Workload {
    std::string_view name;
    void (*addPiece)(Script&) = nullptr;
    WorkloadKind kind = WorkloadKind::mixed;
    PeerScreen peerScreen = PeerScreen::same;

    /// Whole pieces, up to the first that makes at least so many bytes.
    std::string bytes(Geometry geometry, std::size_t size) const;
};

std::span<const Workload> allWorkloads();

}  // namespace orvane::benchmark
