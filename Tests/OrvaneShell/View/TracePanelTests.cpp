#include "OrvaneShell/View/TracePanel.h"

#include <gtest/gtest.h>

namespace orvane {
namespace {

TEST(TracePanelTests, ItTakesTheRightPartOfAPaneAndAllOfANarrowOne) {
    struct Case {
        int bodyCols;
        int x;
        int cols;
    };
    for (const Case& each : {Case{1, 0, 1}, {30, 0, 30}, {31, 1, 30}, {70, 35, 35}, {200, 156, 44}}) {
        const CellRect area = TracePanel::area({5, 2, each.bodyCols, 10});
        EXPECT_EQ(area, (CellRect{5 + each.x, 2, each.cols, 10})) << each.bodyCols;
    }
}

}  // namespace
}  // namespace orvane
