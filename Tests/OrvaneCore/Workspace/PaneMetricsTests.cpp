#include "OrvaneCore/Workspace/PaneMetrics.h"

#include <gtest/gtest.h>

#include <sstream>

#include "OrvaneCore/Workspace/PaneDropZone.h"
#include "OrvaneCore/Workspace/PaneNavigation.h"
#include "Support/PaneTrees.h"
#include "Support/Table.h"

namespace orvane::testing {
namespace {

std::vector<double> numbers(const std::string& text) {
    std::istringstream stream(text);
    return {std::istream_iterator<double>(stream), {}};
}

TEST(PaneMetricsTest, sizesRaiseSmallPanesAtTheCostOfTheLargest) {
    // Shares, then the room and the least size, then the sizes.
    for (const auto& [shares, room, expected] : table<3>(R"(
        | 100 400 | ; 0.5 0.5 | 100 400 | 50 50 ; 0.9 0.1 | 1000 400 | 600 400 ; 0.25 0.75 | 10.5 2 | 2 8.5
        0.333333333333 0.333333333333 0.333333333334 | 1000 140 | 333 333 334
        # the first of two equal givers comes first; one giver is not enough; shares beyond 1 use the room up early
        0.02 0.49 0.49 | 1000 140 | 140 370 490 ; 0.05 0.05 0.3 0.6 | 1000 240 | 240 240 280 240
        1 1 | 100 0 | 100 0 ; 0.5 0.5 | 0 140 | 0 0 ; 0.5 0.5 | 1 140 | 0 1)")) {
        const auto sizes = PaneMetrics::sizes(numbers(shares), numbers(room)[0], numbers(room)[1]);
        EXPECT_EQ(sizes, numbers(expected)) << shares << " of " << room;
    }
    const PaneNode node = tree("h(a,v(b,c))");
    EXPECT_EQ(node.size(leaf('a'), {1001, 601}), (PaneSize{500, 601}));
    EXPECT_EQ(node.size(leaf('c'), {1001, 601}), (PaneSize{500, 300})) << "a divider takes a point";
    EXPECT_EQ(node.size(leaf('c'), {0, 0}), (PaneSize{0, 0}));
    EXPECT_EQ(node.size(leaf('x'), {1001, 601}), std::nullopt);
    PaneNode mismatched = node;
    std::get<PaneNode::Split>(mismatched.value).fractions = {1};
    EXPECT_EQ(mismatched.size(leaf('a'), {1001, 601}), (PaneSize{500, 601}));
}

TEST(PaneDropZoneTest, findsTheNearestEdgeThatIsOffered) {
    // The point and the pane; the bands of the first are 160 wide and 120 high, the others are too small to halve.
    for (const auto& [where, expected] : table<2>(R"(
        500 250 1000 500 | center ; 159 250 1000 500 | leading ; 160 250 1000 500 | center ; 80 60 1000 500 | leading
        841 250 1000 500 | trailing ; 500 119 1000 500 | top ; 500 381 1000 500 | bottom ; 80 59 1000 500 | top
        -5 250 1000 500 | leading ; 1 250 700 500 | center ; 1 1 700 500 | top ; 1 1 700 270 | center
        0 0 0 500 | center)")) {
        const auto at = numbers(where);
        const PaneSize pane{at[2], at[3]};
        const PaneDropZone zone = resolvePaneDropZone({at[0], at[1]}, pane);
        EXPECT_EQ(rawValue(zone), expected) << where;
        const PaneRect shown = previewRect(zone, pane);
        const bool halved = shown.width * shown.height * 2 == pane.width * pane.height;
        EXPECT_EQ(halved, axis(zone).has_value() || pane.width == 0);
        EXPECT_EQ(shown.x > 0 || shown.y > 0, axis(zone).has_value() && !insertsBefore(zone)) << rawValue(zone);
    }
}

TEST(PaneNavigationTest, goesRoundTheEnds) {
    const std::array<int, 4> cases[] = {
        {0, 3, -1, 2}, {2, 3, 1, 0}, {1, 3, -7, 0}, {0, 0, 1, 0}, {2147483647, 2147483647, 2147483647, 0}};
    for (const auto& [current, count, offset, expected] : cases)
        EXPECT_EQ(PaneNavigation::neighbourIndex(current, count, offset), expected) << current << " " << offset;
}

}  // namespace
}  // namespace orvane::testing
