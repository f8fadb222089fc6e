#include "OrvaneCore/Workspace/PaneMetrics.h"

#include <gtest/gtest.h>

#include <tuple>

#include "OrvaneCore/Workspace/PaneDropZone.h"
#include "OrvaneCore/Workspace/PaneNavigation.h"
#include "PaneTrees.h"

namespace orvane::testing {
namespace {

TEST(PaneMetricsTest, sizesRaiseSmallPanesAtTheCostOfTheLargest) {
    const std::tuple<std::vector<double>, double, double, std::vector<double>> cases[] = {
        {{}, 100, 400, {}},
        {{0.5, 0.5}, 100, 400, {50, 50}},
        {{0.9, 0.1}, 1000, 400, {600, 400}},
        {{1.0 / 3, 1.0 / 3, 1.0 / 3}, 1000, 140, {333, 333, 334}},
        {{0.02, 0.49, 0.49}, 1000, 140, {140, 370, 490}},           // the first of two equal givers comes first
        {{0.05, 0.05, 0.3, 0.6}, 1000, 240, {240, 240, 280, 240}},  // one giver is not enough
        {{0.5, 0.5}, 0, 140, {0, 0}},
        {{0.5, 0.5}, 1, 140, {0, 1}},
        {{0.25, 0.75}, 10.5, 2, {2, 8.5}},
        {{1, 1}, 100, 0, {100, 0}},  // shares that sum to more than 1 use the room up early
    };
    for (const auto& [fractions, available, floor, expected] : cases) {
        EXPECT_EQ(PaneMetrics::sizes(fractions, available, floor), expected)
            << ::testing::PrintToString(fractions) << " of " << available << " floor " << floor;
    }
}

TEST(PaneMetricsTest, sizeOfALeafLeavesRoomForDividers) {
    const PaneNode node = tree("h(a,v(b,c))");
    EXPECT_EQ(node.size(leaf('a'), {1001, 601}), (PaneSize{500, 601}));
    EXPECT_EQ(node.size(leaf('c'), {1001, 601}), (PaneSize{500, 300}));
    EXPECT_EQ(node.size(leaf('c'), {0, 0}), (PaneSize{0, 0}));
    EXPECT_EQ(node.size(leaf('x'), {1001, 601}), std::nullopt);
    PaneNode mismatched = node;
    std::get<PaneNode::Split>(mismatched.value).fractions = {1};
    EXPECT_EQ(mismatched.size(leaf('a'), {1001, 601}), (PaneSize{500, 601}));
}

TEST(PaneDropZoneTest, findsTheNearestEdgeThatIsOffered) {
    const PaneSize large{1000, 500};  // bands of 160 and 120
    const std::tuple<PanePoint, PaneSize, PaneDropZone> cases[] = {
        {{500, 250}, large, PaneDropZone::center},    {{159, 250}, large, PaneDropZone::leading},
        {{160, 250}, large, PaneDropZone::center},    {{841, 250}, large, PaneDropZone::trailing},
        {{500, 119}, large, PaneDropZone::top},       {{500, 381}, large, PaneDropZone::bottom},
        {{80, 60}, large, PaneDropZone::leading},  // as near to the top
        {{80, 59}, large, PaneDropZone::top},         {{-5, 250}, large, PaneDropZone::leading},
        {{1, 250}, {700, 500}, PaneDropZone::center},  // too narrow to halve
        {{1, 1}, {700, 500}, PaneDropZone::top},      {{1, 1}, {700, 270}, PaneDropZone::center},
        {{0, 0}, {0, 500}, PaneDropZone::center},
    };
    for (const auto& [point, pane, expected] : cases) {
        const PaneDropZone zone = resolvePaneDropZone(point, pane);
        EXPECT_EQ(zone, expected) << point.x << "," << point.y << " in " << pane.width << " x " << pane.height;
        const PaneRect shown = previewRect(zone, pane);
        const bool halved = shown.width * shown.height * 2 == pane.width * pane.height;
        EXPECT_EQ(halved, axis(zone).has_value() || pane.width == 0);
        EXPECT_EQ(shown.x > 0 || shown.y > 0, axis(zone).has_value() && !insertsBefore(zone)) << rawValue(zone);
    }
}

TEST(PaneNavigationTest, goesRoundTheEnds) {
    const std::array<int, 4> cases[] = {
        {0, 3, -1, 2}, {2, 3, 1, 0}, {1, 3, -7, 0}, {0, 0, 1, 0}, {2147483647, 2147483647, 2147483647, 0}};
    for (const auto& [current, count, offset, expected] : cases) {
        EXPECT_EQ(PaneNavigation::neighbourIndex(current, count, offset), expected) << current << " " << offset;
    }
}

}  // namespace
}  // namespace orvane::testing
