#include <gtest/gtest.h>

#include <random>

#include "OrvaneCore/Workspace/PaneMetrics.h"
#include "Support/PaneEdits.h"

namespace orvane::testing {
namespace {

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
    std::mt19937 random(GetParam());
    const Below below = [&](std::size_t limit) { return random() % limit; };
    PaneNode node = PaneNode::single();
    for (int step = 0; step < 3000; ++step) {
        node = edited(node, below);
        EXPECT_EQ(faults(node), "");
        const PaneSize area{static_cast<double>(below(3000)), static_cast<double>(below(2000))};
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
    EXPECT_EQ(faults(node), "");
    while (node.leafIDs().size() > 2)
        node = *node.removing(node.leafIDs().back());
    EXPECT_EQ(faults(node), "");
}

}  // namespace
}  // namespace orvane::testing
