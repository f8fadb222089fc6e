#pragma once

#include <cstddef>
#include <optional>
#include <vector>

#include "OrvaneCore/Workspace/WorkspaceModel.h"
#include "OrvaneShell/View/CellRect.h"

namespace orvane {

/// A cell in points: what the arithmetic of panes and tabs counts in.
struct CellPoints {
    static constexpr double width = 8;
    static constexpr double height = 16;
};

/// Where everything of the workspace view stands, in cells of the client's terminal. What finds no room is empty.
struct ViewLayout {
    /// A pane: its title row, which also parts it from the pane above, and what it shows below that.
    struct Pane {
        Uuid leaf;
        std::optional<Uuid> content;
        CellRect title;
        CellRect body;
        CellRect whole() const { return {title.x, title.y, title.cols, title.rows + body.rows}; }
        bool operator==(const Pane&) const = default;
    };
    /// A split, with the cells that each child has along its axis (title rows aside).
    struct Split {
        Uuid id;
        PaneAxis axis = PaneAxis::horizontal;
        std::vector<int> lengths;
        bool operator==(const Split&) const = default;
    };
    /// The line between the children `index` and `index + 1` of a split: a column, or the title row of the lower one.
    struct Divider {
        std::size_t split = 0;  ///< in `splits`
        std::size_t index = 0;
        CellRect line;
        bool operator==(const Divider&) const = default;
    };
    struct Tab {
        Uuid surface;
        CellRect rect;
        bool operator==(const Tab&) const = default;
    };

    CellRect sidebar;
    CellRect sidebarEdge;  ///< the column between the sidebar and the rest
    CellRect tabStrip;
    CellRect work;  ///< of the pane tree, its topmost title row included
    CellRect hints;
    std::optional<Uuid> surface;  ///< the tab that is shown
    std::vector<Tab> tabs;
    std::vector<SurfaceMeta> hiddenTabs;
    CellRect hiddenTabsMark;
    std::vector<Pane> panes;
    std::vector<Split> splits;
    std::vector<Divider> dividers;

    bool operator==(const ViewLayout&) const = default;

    const Pane* pane(const Uuid& leaf) const;
    const Pane* paneAt(int x, int y) const;
    const Divider* dividerAt(int x, int y) const;
    const Tab* tabAt(int x, int y) const;
    /// The pane beside a pane: of those that touch that edge and lie across from it, the one with the longest common
    /// border.
    enum class Direction { left, right, up, down };
    const Pane* neighbour(const Uuid& leaf, Direction direction) const;
    /// The shares of a split's children after its divider was moved by so many cells towards its end; none when there
    /// is no room.
    std::optional<std::vector<double>> movingDivider(const Divider& divider, int by) const;
    /// The divider that moves when a pane's edge is pulled: that of the innermost split along the axis, behind the pane
    /// or else before it.
    const Divider* dividerOf(const Uuid& leaf, PaneAxis axis) const;
    /// What the tree fills, in points.
    PaneSize area() const;

    struct Options {
        int cols = 80;
        int rows = 24;
        bool showsSidebar = true;
        bool showsTabs = true;
        std::optional<Uuid> zoomedLeaf;
    };
    static ViewLayout of(const WorkspaceModel& workspace, const Options& options);

    /// The least that a pane is made by moving an edge. People look at two agents side by side in 80 columns too, so it
    /// is less than what a pane needs to be split.
    static constexpr int smallestCols = 8;
    static constexpr int smallestRows = 2;
    /// The smallest terminal with a sidebar that was not asked for.
    static constexpr int colsForSidebar = 80;
};

}  // namespace orvane
