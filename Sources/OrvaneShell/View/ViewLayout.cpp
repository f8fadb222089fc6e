#include "OrvaneShell/View/ViewLayout.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "OrvaneCore/Support/Overloaded.h"
#include "OrvaneCore/Workspace/PaneFractions.h"
#include "OrvaneCore/Workspace/PaneMetrics.h"
#include "OrvaneCore/Workspace/SurfaceTabs.h"

namespace orvane {

namespace {

constexpr int smallSidebar = 24;
constexpr int wideSidebar = 30;
constexpr int colsForWideSidebar = 110;
/// The mark of the tabs that have no room: "+12".
constexpr int hiddenTabsCols = 4;
constexpr int leastPaneCols = 20;
constexpr int leastPaneRows = 4;

double pointsOf(int cells, PaneAxis axis) {
    return cells * (axis == PaneAxis::horizontal ? CellPoints::width : CellPoints::height);
}

/// Points by the shares of a split. What is comfortable in a window would leave a terminal of 80 columns no edge to
/// move, so that here a pane may be smaller.
std::vector<double> pointLengths(const PaneNode::Split& split, int available) {
    const std::size_t count = split.children.size();
    const bool isMatching = split.fractions.size() == count;
    const double least = pointsOf(split.axis == PaneAxis::horizontal ? leastPaneCols : leastPaneRows, split.axis);
    return PaneMetrics::sizes(isMatching ? split.fractions : PaneFractions::equal(count),
                              pointsOf(available, split.axis), least);
}

/// Lengths in points as cells: each edge is rounded once, so that the cells sum to what there is.
std::vector<int> cellLengths(const std::vector<double>& points, PaneAxis axis, int available) {
    std::vector<int> lengths;
    lengths.reserve(points.size());
    double edge = 0;
    int used = 0;
    for (const double length : points) {
        edge += length;
        const auto end = std::clamp(static_cast<int>(std::lround(edge / pointsOf(1, axis))), used, available);
        lengths.push_back(end - used);
        used = end;
    }
    if (!lengths.empty()) lengths.back() += available - used;
    return lengths;
}

/// Puts a tree into a rectangle whose first row is a title.
class Placement {
 public:
    explicit Placement(ViewLayout& layout) : layout_(layout) {}

    void place(const PaneNode& node, const CellRect& rect) {
        std::visit(Overloaded{[&](const PaneNode::Leaf& leaf) { placeLeaf(leaf, rect); },
                              [&](const PaneNode::Split& split) { placeSplit(split, rect); }},
                   node.value);
    }

 private:
    void placeLeaf(const PaneNode::Leaf& leaf, const CellRect& rect) {
        const int titleRows = std::min(rect.rows, 1);
        layout_.panes.push_back(
            {.leaf = leaf.id,
             .content = leaf.contentID,
             .title = {.x = rect.x, .y = rect.y, .cols = rect.cols, .rows = titleRows},
             .body = {.x = rect.x, .y = rect.y + titleRows, .cols = rect.cols, .rows = rect.rows - titleRows}});
    }

    void placeSplit(const PaneNode::Split& split, const CellRect& rect) {
        const auto count = static_cast<int>(split.children.size());
        const bool isRow = split.axis == PaneAxis::horizontal;
        // Between columns a line is drawn; rows are parted by their titles, of which the first is not between two.
        const int available = std::max(0, isRow ? rect.cols - (count - 1) : rect.rows - count);
        const auto lengths = cellLengths(pointLengths(split, available), split.axis, available);
        const std::size_t splitIndex = layout_.splits.size();
        layout_.splits.push_back({.id = split.id, .axis = split.axis, .lengths = lengths});
        int at = isRow ? rect.x : rect.y;
        const int end = isRow ? rect.right() : rect.bottom();
        for (std::size_t i = 0; i < split.children.size(); ++i) {
            const int length = std::clamp(lengths[i] + (isRow ? 0 : 1), 0, end - at);
            const CellRect child = isRow ? CellRect{.x = at, .y = rect.y, .cols = length, .rows = rect.rows}
                                         : CellRect{.x = rect.x, .y = at, .cols = rect.cols, .rows = length};
            if (!isRow && i > 0) addDivider(splitIndex, i - 1, {child.x, child.y, child.cols, std::min(length, 1)});
            place(split.children[i], child);
            at += length;
            if (!isRow || i + 1 == split.children.size() || at >= end) continue;
            addDivider(splitIndex, i, {at, rect.y, 1, rect.rows});
            ++at;
        }
    }

    void addDivider(std::size_t split, std::size_t index, const CellRect& line) {
        layout_.dividers.push_back({.split = split, .index = index, .line = line});
    }

    ViewLayout& layout_;
};

void placeFrame(ViewLayout& layout, const ViewLayout::Options& options) {
    const int side = !options.showsSidebar ? 0 : options.cols >= colsForWideSidebar ? wideSidebar : smallSidebar;
    const int sidebar = std::min(side, std::max(0, options.cols - 2));
    const int edge = sidebar > 0 ? 1 : 0;
    const int left = sidebar + edge;
    const int upper = std::max(0, options.rows - 1);
    layout.sidebar = {0, 0, sidebar, upper};
    layout.sidebarEdge = {sidebar, 0, edge, upper};
    layout.tabStrip = {left, 0, options.cols - left, std::min(options.showsTabs ? 1 : 0, upper)};
    layout.work = {left, layout.tabStrip.rows, options.cols - left, upper - layout.tabStrip.rows};
    layout.hints = {0, upper, options.cols, options.rows - upper};
}

void placeTabs(ViewLayout& layout, const WorkspaceModel& workspace, const Uuid& project) {
    const auto metas = workspace.visibleSurfaces(project);
    const auto count = static_cast<int>(metas.size());
    int room = layout.tabStrip.cols;
    if (SurfaceTabs::visibleCount(count, room * CellPoints::width) < count) room -= hiddenTabsCols;
    const double available = room * CellPoints::width;
    const auto width = static_cast<int>(SurfaceTabs::width(count, available) / CellPoints::width);
    const int visible = SurfaceTabs::visibleCount(count, available);
    int x = layout.tabStrip.x;
    for (int i = 0; i < visible; ++i) {
        const int cols = std::clamp(width, 0, layout.tabStrip.x + room - x);
        layout.tabs.push_back({.surface = metas[static_cast<std::size_t>(i)].id,
                               .rect = {.x = x, .y = layout.tabStrip.y, .cols = cols, .rows = layout.tabStrip.rows}});
        x += cols + 1;
    }
    layout.hiddenTabs = SurfaceTabs::overflow(metas, available);
    if (layout.hiddenTabs.empty()) return;
    layout.hiddenTabsMark = {layout.tabStrip.x + room, layout.tabStrip.y, layout.tabStrip.cols - room,
                             layout.tabStrip.rows};
}

bool overlaps(int aStart, int aEnd, int bStart, int bEnd) {
    return std::min(aEnd, bEnd) > std::max(aStart, bStart);
}

}  // namespace

ViewLayout ViewLayout::of(const WorkspaceModel& workspace, const Options& options) {
    ViewLayout layout;
    placeFrame(layout, options);
    const auto project = workspace.selectedProjectID;
    if (!project) return layout;
    if (options.showsTabs) placeTabs(layout, workspace, *project);
    const auto active = workspace.activeSurfaceID.find(*project);
    if (active == workspace.activeSurfaceID.end()) return layout;
    layout.surface = active->second;
    const auto tree = workspace.surfaceTrees.find(active->second);
    if (tree == workspace.surfaceTrees.end()) return layout;
    if (options.zoomedLeaf && tree->second.contains(*options.zoomedLeaf)) {
        const PaneNode::Leaf zoomed{.id = *options.zoomedLeaf,
                                    .contentID = tree->second.contentID(*options.zoomedLeaf)};
        Placement(layout).place({zoomed}, layout.work);
    } else {
        Placement(layout).place(tree->second, layout.work);
    }
    return layout;
}

const ViewLayout::Pane* ViewLayout::pane(const Uuid& leaf) const {
    const auto found = std::ranges::find(panes, leaf, &Pane::leaf);
    return found == panes.end() ? nullptr : &*found;
}

const ViewLayout::Pane* ViewLayout::paneAt(int x, int y) const {
    const auto found = std::ranges::find_if(panes, [&](const Pane& pane) { return pane.whole().contains(x, y); });
    return found == panes.end() ? nullptr : &*found;
}

const ViewLayout::Divider* ViewLayout::dividerAt(int x, int y) const {
    const auto found = std::ranges::find_if(dividers, [&](const Divider& each) { return each.line.contains(x, y); });
    return found == dividers.end() ? nullptr : &*found;
}

const ViewLayout::Tab* ViewLayout::tabAt(int x, int y) const {
    const auto found = std::ranges::find_if(tabs, [&](const Tab& tab) { return tab.rect.contains(x, y); });
    return found == tabs.end() ? nullptr : &*found;
}

const ViewLayout::Pane* ViewLayout::neighbour(const Uuid& leaf, Direction direction) const {
    const Pane* from = pane(leaf);
    if (from == nullptr) return nullptr;
    const CellRect here = from->whole();
    const bool isSideways = direction == Direction::left || direction == Direction::right;
    const Pane* best = nullptr;
    int bestBorder = 0;
    for (const Pane& candidate : panes) {
        const CellRect there = candidate.whole();
        const bool touches = (direction == Direction::left && there.right() + 1 == here.x) ||
                             (direction == Direction::right && here.right() + 1 == there.x) ||
                             (direction == Direction::up && there.bottom() == here.y) ||
                             (direction == Direction::down && here.bottom() == there.y);
        if (!touches) continue;
        const int border = isSideways ? std::min(here.bottom(), there.bottom()) - std::max(here.y, there.y)
                                      : std::min(here.right(), there.right()) - std::max(here.x, there.x);
        if (border <= bestBorder) continue;
        best = &candidate;
        bestBorder = border;
    }
    return best;
}

std::optional<std::vector<double>> ViewLayout::movingDivider(const Divider& divider, int by) const {
    std::vector<int> lengths = splits[divider.split].lengths;
    int& before = lengths[divider.index];
    int& behind = lengths[divider.index + 1];
    const int moved = std::clamp(by, std::min(0, 1 - before), std::max(0, behind - 1));
    if (moved == 0) return std::nullopt;
    before += moved;
    behind -= moved;
    // A share of nothing is none; a child that has no cell keeps the least there is.
    std::vector<double> shares(lengths.size());
    std::ranges::transform(lengths, shares.begin(), [](int length) { return std::max(length, 1); });
    return PaneFractions::normalised(std::move(shares));
}

const ViewLayout::Divider* ViewLayout::dividerOf(const Uuid& leaf, PaneAxis axis) const {
    const Pane* pulled = pane(leaf);
    if (pulled == nullptr) return nullptr;
    const CellRect rect = pulled->whole();
    const bool isRow = axis == PaneAxis::horizontal;
    const auto touches = [&](const Divider& divider, int edge) {
        const bool isAlong = splits[divider.split].axis == axis;
        return isAlong &&
               (isRow ? divider.line.x == edge && overlaps(divider.line.y, divider.line.bottom(), rect.y, rect.bottom())
                      : divider.line.y == edge && overlaps(divider.line.x, divider.line.right(), rect.x, rect.right()));
    };
    for (const int edge : isRow ? std::array{rect.right(), rect.x - 1} : std::array{rect.bottom(), rect.y}) {
        const auto found = std::ranges::find_if(dividers, [&](const Divider& each) { return touches(each, edge); });
        if (found != dividers.end()) return &*found;
    }
    return nullptr;
}

PaneSize ViewLayout::area() const {
    return {.width = work.cols * CellPoints::width, .height = std::max(0, work.rows - 1) * CellPoints::height};
}

}  // namespace orvane
