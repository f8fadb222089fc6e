#include <gtest/gtest.h>

#include "TerminalEmulator/Buffer/ClusterTable.h"
#include "TerminalEmulator/Buffer/PayloadHolder.h"

namespace orvane::testing {
namespace {

TEST(ClusterTableTests, ClustersGetHandlesAndSingleScalarsDoNot) {
    ClusterTable table;
    EXPECT_EQ(table.charToIndex("é"), 0xE9);
    EXPECT_EQ(table.lastCharIndex(), ClusterTable::firstHandle);
    const std::int32_t joined = table.joined('e', 0x301);
    EXPECT_EQ(joined, ClusterTable::firstHandle);
    EXPECT_EQ(table.charToIndex("e\u0301"), joined);
    EXPECT_EQ(table.indexToChar(joined), "e\u0301");
    EXPECT_EQ(table.baseScalar(joined), U'e');
    EXPECT_EQ(table.lastScalar(joined), U'\u0301');
    table.reset();
    EXPECT_EQ(table.text(joined), " ");
    EXPECT_NE(table.joined('a', 0x301), joined) << "a handle never means another cluster";
}

TEST(ClusterTableTests, ACapIsSetToTheLengthAndTheNumberOfClusters) {
    ClusterTable table;
    std::int32_t code = 'e';
    for (int count = 0; count < 100; ++count)
        code = table.joined(code, 0x301);
    EXPECT_EQ(table.text(code).size(), 1 + 2 * (ClusterTable::maximumScalars - 1));
    std::int32_t last = 0;
    for (std::int32_t base = 0; base < static_cast<std::int32_t>(ClusterTable::maximumClusters); ++base) {
        last = table.joined(0x10000 + base, 0x301);
    }
    EXPECT_EQ(last, 0x10000 + static_cast<std::int32_t>(ClusterTable::maximumClusters) - 1) << "the base scalar alone";
    EXPECT_EQ(table.text(table.joined(0x10000, 0x301)), "\U00010000\u0301") << "those known go on";
}

TEST(PayloadHolderTests, ACollectionFreesWhatNoCellShows) {
    const auto keepNone = [](PayloadSet&) {};
    PayloadHolder other;
    const TinyAtom shared = other.hold("https://shared", keepNone);
    {
        PayloadHolder holder;
        EXPECT_EQ(holder.hold("https://shared", keepNone), shared);
        const TinyAtom kept = holder.hold("https://kept", keepNone);
        const TinyAtom gone = holder.hold("https://gone", keepNone);
        holder.collect([&](PayloadSet& inUse) { inUse.insert(kept.code); });
        EXPECT_EQ(*kept.target(), "https://kept");
        EXPECT_EQ(gone.target(), nullptr);
        EXPECT_EQ(*shared.target(), "https://shared") << "another terminal holds it";
        EXPECT_EQ(holder.hold("", keepNone).code, 0);
        EXPECT_EQ(holder.hold(std::string(TinyAtom::maximumTextLength + 1, 'x'), keepNone).code, 0);
    }
    EXPECT_EQ(*shared.target(), "https://shared");
}

TEST(PayloadHolderTests, WithoutAFreeHandleTextGoesWithoutItsLinkAndCollectionsAreRare) {
    PayloadHolder holder;
    int collections = 0;
    const auto keepAll = [&](PayloadSet& inUse) {
        ++collections;
        for (std::size_t code = 1; code <= TinyAtom::maximumHandles; ++code)
            inUse.insert(static_cast<std::uint16_t>(code));
    };
    int refused = 0;
    for (std::size_t count = 0; count < TinyAtom::maximumHandles + 3000; ++count) {
        if (holder.hold("https://" + std::to_string(count), keepAll).code == 0) ++refused;
    }
    EXPECT_EQ(refused, 3000);
    EXPECT_EQ(collections, 3);
    holder.collect([](PayloadSet&) {});
    EXPECT_NE(holder.hold("https://again", keepAll).code, 0);
}

}  // namespace
}  // namespace orvane::testing
