#pragma once

#include <array>
#include <optional>

#include "OrvaneCore/Support/RawValue.h"
#include "OrvaneCore/Workspace/PaneAxis.h"
#include "OrvaneCore/Workspace/PaneGeometry.h"

namespace orvane {

/// Where in a pane a dragged pane is dropped: onto it, or beside it at one of its edges.
enum class PaneDropZone { center, leading, trailing, top, bottom };

template <>
struct RawValues<PaneDropZone> {
    static constexpr std::array table = {
        rawValueOf(PaneDropZone::center, "center"),     rawValueOf(PaneDropZone::leading, "leading"),
        rawValueOf(PaneDropZone::trailing, "trailing"), rawValueOf(PaneDropZone::top, "top"),
        rawValueOf(PaneDropZone::bottom, "bottom"),
    };
};

/// The axis along which a drop splits the pane; none for the center.
std::optional<PaneAxis> axis(PaneDropZone zone);

bool insertsBefore(PaneDropZone zone);

/// The part of a pane that the dropped pane would take.
PaneRect previewRect(PaneDropZone zone, const PaneSize& in);

/// The zone under a cursor in a pane. Edges are only offered on an axis where both halves stay comfortable.
PaneDropZone resolvePaneDropZone(const PanePoint& point, const PaneSize& in);

}  // namespace orvane
