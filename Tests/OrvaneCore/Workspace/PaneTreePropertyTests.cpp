// Long random rows of edits, after each of which everything that the panes promise must hold.

#include <gtest/gtest.h>

#include <cmath>
#include <numeric>
#include <set>

#include "OrvaneCore/Workspace/PaneLayout.h"
#include "OrvaneCore/Workspace/PaneMetrics.h"
#include "OrvaneCore/Workspace/PaneMove.h"
#include "OrvaneCore/Workspace/PanePlacement.h"
#include "PaneTrees.h"

namespace orvane::testing {
namespace {

/// A user without a plan. Ids of unknown panes and splits come up now and then.
class RandomUser {
 public:
    explicit RandomUser(std::uint32_t seed) : random_(seed) {}

    int below(int limit) { return std::uniform_int_distribution(0, limit - 1)(random_); }
    Uuid anyContent() { return content(static_cast<char>('a' + below(26))); }
    PaneAxis anyAxis() { return below(2) == 0 ? PaneAxis::horizontal : PaneAxis::vertical; }
    PaneDropZone anyZone() { return static_cast<PaneDropZone>(below(5)); }
    PaneSize anySize() { return {static_cast<double>(below(3000)), static_cast<double>(below(2000))}; }

    Uuid anyLeaf(const PaneNode& node) {
        const std::vector<Uuid> ids = node.leafIDs();
        return below(20) == 0 ? Uuid::random() : ids[static_cast<std::size_t>(below(static_cast<int>(ids.size())))];
    }

    PaneNode dragDivider(const PaneNode& node) {
        std::vector<const PaneNode::Split*> splits;
        forEachSplit(node, [&](const PaneNode::Split& split, std::size_t) { splits.push_back(&split); });
        if (splits.empty()) return node.updatingFractions(Uuid::random(), {1});
        const PaneNode::Split& split = *splits[static_cast<std::size_t>(below(static_cast<int>(splits.size())))];
        std::vector<double> shares;
        for (std::size_t index = 0; index < split.children.size(); ++index) {
            shares.push_back(std::pow(10, below(40) - 30) * (1 + below(100)));
        }
        return node.updatingFractions(split.id, shares);
    }

    PaneNode step(const PaneNode& node) {
        const Uuid target = anyLeaf(node);
        // Past sixty panes more are closed than opened.
        switch (below(node.leafIDs().size() > 60 ? 14 : 10)) {
            case 0:
                return node.splitting(target, anyAxis());
            case 1:
                return node.inserting(anyContent(), Uuid::random(), target, anyAxis(), below(2) == 0);
            case 2:
                return node.clearing(anyContent());
            case 3:
                return node.assigningContent(anyContent(), target);
            case 4:
                return PaneMove::moving(anyContent(), target, anyZone(), node);
            case 5:
                return dragDivider(node);
            case 6:
                return PanePlacement::placing(anyContent(), node, target, anySize()).tree;
            case 7:
                return below(30) == 0 ? apply(node) : node.splitting(node.leafIDs().front(), anyAxis());
            case 8:
                return node.splitting(node.leafIDs().back(), anyAxis());
            default:
                return node.removing(target).value_or(PaneNode::single());
        }
    }

 private:
    PaneNode apply(const PaneNode& node) {
        return PaneLayout::applying(PaneLayout::all[static_cast<std::size_t>(below(5))].build(), node).tree;
    }

    std::mt19937 random_;
};

void expectSound(const PaneNode& node) {
    std::set<Uuid> ids = {Uuid()};
    for (const Uuid& id : node.leafIDs())
        EXPECT_TRUE(ids.insert(id).second) << "leaf id used twice";
    forEachSplit(node, [&](const PaneNode::Split& split, std::size_t depth) {
        EXPECT_TRUE(ids.insert(split.id).second) << "split id used twice";
        EXPECT_LT(depth, PaneNode::maximumDepth);
        EXPECT_GE(split.children.size(), 2U);
        EXPECT_TRUE(PaneFractions::fits(split.fractions, split.children.size())) << text(node);
        EXPECT_NEAR(std::accumulate(split.fractions.begin(), split.fractions.end(), 0.0), 1, 1e-8) << text(node);
    });
}

/// The children fill the room to the point and none is squeezed below what all of them could have.
void expectFilled(const PaneNode::Split& split, const PaneSize& area) {
    const bool stacked = split.axis == PaneAxis::vertical;
    const auto count = static_cast<double>(split.children.size());
    const double available = std::max((stacked ? area.height : area.width) - (count - 1), 0.0);
    const double least = std::min(std::floor(available / count), stacked ? 140.0 : 400.0);
    double sum = 0;
    for (const PaneSize& size : PaneMetrics::childSizes(split, area)) {
        const double length = stacked ? size.height : size.width;
        EXPECT_GE(length, least);
        EXPECT_EQ(stacked ? size.width : size.height, stacked ? area.width : area.height);
        sum += length;
    }
    EXPECT_EQ(sum, available) << ::testing::PrintToString(split.fractions);
}

class PaneTreeProperty : public ::testing::TestWithParam<std::uint32_t> {};

TEST_P(PaneTreeProperty, holdsAfterEveryEdit) {
    RandomUser user(GetParam());
    PaneNode node = PaneNode::single();
    for (int step = 0; step < 3000; ++step) {
        node = user.step(node);
        expectSound(node);
        const PaneSize area = user.anySize();
        forEachSplit(node, [&](const PaneNode::Split& split, std::size_t) { expectFilled(split, area); });
        EXPECT_TRUE(PaneNode::decode(node.encode()) == node);
        ASSERT_FALSE(HasFailure()) << "seed " << GetParam() << " step " << step << ": " << text(node);
    }
}

INSTANTIATE_TEST_SUITE_P(Seeds, PaneTreeProperty, ::testing::Values(1, 20, 300));

TEST(PaneFractionsTest, thousandsOfSplitsOfOnePaneLeaveEveryShareAboveZero) {
    PaneNode node = tree("a");
    for (int step = 0; step < 1500; ++step)
        node = node.splitting(leaf('a'), PaneAxis::horizontal);
    expectSound(node);
    while (node.leafIDs().size() > 2)
        node = *node.removing(node.leafIDs().back());
    expectSound(node);
}

}  // namespace
}  // namespace orvane::testing
