#include <gtest/gtest.h>

#include <tuple>

#include "OrvaneCore/Support/L10n.h"
#include "OrvaneCore/Workspace/PaneLayout.h"
#include "OrvaneCore/Workspace/PaneMove.h"
#include "OrvaneCore/Workspace/PanePlacement.h"
#include "PaneTrees.h"

namespace orvane::testing {
namespace {

TEST(PanePlacementTest, takesAFreePaneOrSplitsOne) {
    const std::tuple<const char*, char, PaneSize, const char*, char> cases[] = {
        {"h(a,v(B,C))", 'a', {2000, 1000}, "h(0.5 a, 0.5 v(0.5 n, 0.5 .))", 'b'},
        {"h(a,b)", 'b', {2000, 1000}, "h(0.5 a, 0.25 b, 0.25 n)", 'n'},
        {"h(a,b)", 'x', {2000, 1000}, "h(0.25 a, 0.25 n, 0.5 b)", 'n'},
        {"a", 'a', {801, 281}, "h(0.5 a, 0.5 n)", 'n'},
        {"a", 'a', {800.9, 281}, "v(0.5 a, 0.5 n)", 'n'},
        {"a", 'a', {800.9, 280.9}, "h(0.5 a, 0.5 n)", 'n'},             // cramped
        {"v(a,b)", 'b', {0, 0}, "v(0.5 a, 0.5 h(0.5 b, 0.5 n))", 'n'},  // not measured yet
    };
    for (const auto& [start, focused, area, expected, taken] : cases) {
        const auto made = PanePlacement::placing(content('n'), tree(start), leaf(focused), area, leaf('n'));
        EXPECT_EQ(text(made.tree), expected) << start << " focus " << focused;
        EXPECT_EQ(made.leaf, leaf(taken)) << start;
        EXPECT_EQ(made.tree.contentID(made.leaf), content('n')) << start;
    }
    const auto given = PanePlacement::placingInLeaf(leaf('a'), content('n'), tree("h(a,B)"), leaf('b'), {}, leaf('n'));
    EXPECT_EQ(text(given.tree), "h(0.5 n, 0.5 .)");
    const auto gone = PanePlacement::placingInLeaf(leaf('x'), content('n'), tree("h(a,B)"), leaf('a'), {}, leaf('n'));
    EXPECT_EQ(text(gone.tree), "h(0.5 a, 0.5 n)");
    EXPECT_EQ(gone.leaf, leaf('b'));
}

TEST(PaneMoveTest, dropsAPane) {
    const std::tuple<const char*, char, char, PaneDropZone, const char*> cases[] = {
        {"h(a,b,c)", 'a', 'c', PaneDropZone::center, "h(0.5 b, 0.5 a)"},
        {"h(a,b)", 'a', 'b', PaneDropZone::center, "a"},
        {"h(a,b)", 'a', 'b', PaneDropZone::bottom, "v(0.5 b, 0.5 a)"},
        {"h(a,b)", 'a', 'b', PaneDropZone::trailing, "h(0.5 b, 0.5 a)"},
        {"h(a,v(b,c))", 'c', 'a', PaneDropZone::top, "h(0.5 v(0.5 c, 0.5 a), 0.5 b)"},
        {"h(a,v(b,c))", 'b', 'a', PaneDropZone::leading, "h(0.25 b, 0.25 a, 0.5 c)"},
        {"h(a,B)", 'a', 'b', PaneDropZone::center, "a"},
        {"h(a,b)", 'a', 'a', PaneDropZone::center, "h(0.5 a, 0.5 b)"},  // onto itself
        {"h(a,b)", 'a', 'a', PaneDropZone::bottom, "h(0.5 a, 0.5 b)"},
        {"a", 'a', 'a', PaneDropZone::leading, "a"},
        {"h(a,b)", 'a', 'x', PaneDropZone::leading, "h(0.5 a, 0.5 b)"},  // the pane is gone
        {"a", 's', 'a', PaneDropZone::trailing, "h(0.5 a, 0.5 s)"},      // from the sidebar
        {"a", 's', 'a', PaneDropZone::center, "s"},
    };
    for (const auto& [start, moved, onto, zone, expected] : cases) {
        const PaneNode made = PaneMove::moving(content(moved), leaf(onto), zone, tree(start), leaf('n'));
        EXPECT_EQ(text(made), expected) << start << ": " << moved << " onto " << onto << " " << rawValue(zone);
        // A pane moved to an edge is still the same pane.
        const bool keepsPane = axis(zone) && tree(start).leafID(content(moved));
        EXPECT_TRUE(!keepsPane || made.leafID(content(moved)) == leaf(moved)) << start;
    }
}

TEST(PaneLayoutTest, takesOverContentsInLeafOrder) {
    const std::tuple<const char*, const char*, const char*, std::vector<Uuid>> cases[] = {
        {"h(.,v(.,.))", "h(a,B,c)", "h(0.5 a, 0.5 v(0.5 c, 0.5 .))", {}},
        {".", "v(h(a,b),h(C,d))", "a", {content('b'), content('d')}},
        {"h(.,.)", "h(a,a,b)", "h(0.5 a, 0.5 b)", {}},
        {"h(x,y)", "A", "h(0.5 ., 0.5 .)", {}},  // a layout brings no contents along
    };
    for (const auto& [layout, start, expected, unplaced] : cases) {
        const PaneNode shape = tree(layout);
        const auto applied = PaneLayout::applying(shape, tree(start));
        EXPECT_EQ(text(applied.tree), expected) << start << " as " << layout;
        EXPECT_EQ(applied.unplaced, unplaced) << start << " as " << layout;
        EXPECT_NE(applied.tree.id(), shape.id()) << "two workspaces may share a saved layout";
    }
}

TEST(PaneLayoutTest, menuLayouts) {
    const char* const shapes[] = {".", "h(0.5 ., 0.5 .)", "v(0.5 ., 0.5 .)", "h(0.5 ., 0.5 v(0.5 ., 0.5 .))",
                                  "v(0.5 h(0.5 ., 0.5 .), 0.5 h(0.5 ., 0.5 .))"};
    const char* const* shape = shapes;
    for (const char* name : {"single", "twoColumns", "twoRows", "onePlusTwo", "grid"}) {
        const PaneLayout* layout = PaneLayout::named(name);
        ASSERT_NE(layout, nullptr) << name;
        EXPECT_EQ(text(layout->build()), *shape++);
        EXPECT_NE(L10n{Language::de}.text(layout->textKey), layout->textKey);
    }
    EXPECT_EQ(PaneLayout::named("Grid"), nullptr);
}

}  // namespace
}  // namespace orvane::testing
