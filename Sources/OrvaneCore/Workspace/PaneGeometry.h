#pragma once

namespace orvane {

/// Lengths in points. The origin of a pane is its top left corner.
struct PaneSize {
    double width = 0;
    double height = 0;

    bool operator==(const PaneSize&) const = default;
};

struct PanePoint {
    double x = 0;
    double y = 0;

    bool operator==(const PanePoint&) const = default;
};

struct PaneRect {
    double x = 0;
    double y = 0;
    double width = 0;
    double height = 0;

    bool operator==(const PaneRect&) const = default;
};

}  // namespace orvane
