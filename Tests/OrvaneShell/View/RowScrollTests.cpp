#include "OrvaneShell/View/RowScroll.h"

#include <gtest/gtest.h>

#include <string_view>
#include <vector>

namespace orvane {

namespace {

/// Each letter a row of its own; blank ones are ".", light ones small letters.
std::vector<RowPrint> prints(std::string_view rows) {
    std::vector<RowPrint> result;
    for (const char row : rows)
        result.push_back({static_cast<std::uint64_t>(row), row == '.' ? 0 : row >= 'a' ? 5 : 60});
    return result;
}

TEST(RowScrollTests, IsFoundWhereItSavesWriting) {
    struct Case {
        std::string_view before;
        std::string_view after;
        std::optional<RowScroll> scroll;
    };
    const Case cases[] = {
        {"ABCDEF", "BCDEFG", RowScroll{0, 6, 1}},
        {"tABCDEs", "tCDEXYs", RowScroll{1, 6, 2}},
        {"tABCDEs", "tXYABCs", RowScroll{1, 6, -2}},
        {"ABCD", "ABCD", std::nullopt},
        {"ABCD", "WXYZ", std::nullopt},
        {"abcd", "bcde", std::nullopt},              // five cells a row are written as quickly
        {"....A.", "...A..", RowScroll{3, 5, 1}},    // one full row
        {"aBCDE", "BxCDE", RowScroll{0, 2, 1}},      // the others stay
        {"ABABABX", "BABABXY", RowScroll{0, 7, 1}},  // rows alike
    };
    for (const auto& [before, after, scroll] : cases)
        EXPECT_EQ(findScroll(prints(before), prints(after)), scroll) << before << " " << after;
}

}  // namespace

}  // namespace orvane
