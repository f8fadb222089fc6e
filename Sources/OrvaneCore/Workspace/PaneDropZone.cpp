#include "OrvaneCore/Workspace/PaneDropZone.h"

#include <algorithm>

#include "OrvaneCore/Workspace/PaneMetrics.h"

namespace orvane {

namespace {

/// The depth of the band along an edge, as a share of the pane and held between two lengths in points.
constexpr double bandShare = 0.3;
constexpr double minBandWidth = 44;
constexpr double maxBandWidth = 160;
constexpr double minBandHeight = 36;
constexpr double maxBandHeight = 120;

/// The zone with the lowest score below 1; of equal ones the first offered.
class NearestEdge {
 public:
    void offer(PaneDropZone zone, double score) {
        if (score >= score_) return;
        zone_ = zone;
        score_ = score;
    }

    PaneDropZone zone() const { return zone_; }

 private:
    PaneDropZone zone_ = PaneDropZone::center;
    double score_ = 1;
};

}  // namespace

std::optional<PaneAxis> axis(PaneDropZone zone) {
    switch (zone) {
        case PaneDropZone::center:
            return std::nullopt;
        case PaneDropZone::leading:
        case PaneDropZone::trailing:
            return PaneAxis::horizontal;
        case PaneDropZone::top:
        case PaneDropZone::bottom:
            return PaneAxis::vertical;
    }
    return std::nullopt;
}

bool insertsBefore(PaneDropZone zone) {
    return zone == PaneDropZone::leading || zone == PaneDropZone::top;
}

PaneRect previewRect(PaneDropZone zone, const PaneSize& in) {
    const double halfWidth = in.width / 2;
    const double halfHeight = in.height / 2;
    switch (zone) {
        case PaneDropZone::center:
            break;
        case PaneDropZone::leading:
            return {.width = halfWidth, .height = in.height};
        case PaneDropZone::trailing:
            return {.x = halfWidth, .width = halfWidth, .height = in.height};
        case PaneDropZone::top:
            return {.width = in.width, .height = halfHeight};
        case PaneDropZone::bottom:
            return {.y = halfHeight, .width = in.width, .height = halfHeight};
    }
    return {.width = in.width, .height = in.height};
}

PaneDropZone resolvePaneDropZone(const PanePoint& point, const PaneSize& in) {
    if (in.width <= 0 || in.height <= 0) return PaneDropZone::center;
    const double bandWidth = std::clamp(in.width * bandShare, minBandWidth, maxBandWidth);
    const double bandHeight = std::clamp(in.height * bandShare, minBandHeight, maxBandHeight);
    NearestEdge nearest;
    if (in.width * 0.5 >= PaneMetrics::minWidth) {
        nearest.offer(PaneDropZone::leading, point.x / bandWidth);
        nearest.offer(PaneDropZone::trailing, (in.width - point.x) / bandWidth);
    }
    if (in.height * 0.5 >= PaneMetrics::minHeight) {
        nearest.offer(PaneDropZone::top, point.y / bandHeight);
        nearest.offer(PaneDropZone::bottom, (in.height - point.y) / bandHeight);
    }
    return nearest.zone();
}

}  // namespace orvane
