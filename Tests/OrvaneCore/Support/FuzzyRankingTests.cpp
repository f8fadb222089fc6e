#include "OrvaneCore/Support/FuzzyRanking.h"

#include <gmock/gmock.h>

namespace orvane {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

TEST(FuzzyRankingTest, FindsWhatPeopleTypeOfAText) {
    const std::vector<std::string> texts = {"Split left/right", "Split top/bottom",   "Größe ändern",
                                            "new session",      "next session",       "website login",
                                            "日本語 端末",      "undo the last close"};
    const FuzzyRanking ranking(texts);
    const struct {
        const char* query;
        std::vector<std::size_t> found;
    } cases[] = {
        {"", {0, 1, 2, 3, 4, 5, 6, 7}},
        {"  ", {0, 1, 2, 3, 4, 5, 6, 7}},
        {"slr", {0}},         // the beginnings of words
        {"split bot", {1}},   // each word for itself
        {"bot split", {1}},   // in any order
        {"grosse and", {2}},  // blind to accents and case
        {"GRÖSSE", {2}},      //
        {"ns", {3, 4}},       //
        {"nses", {3, 4}},     //
        {"nxt", {4}},         //
        {"web log", {5}},     //
        {"端", {6}},          //
        {"dha", {}},          // scattered inside of words
        {"split x", {}},      // one word is nowhere
        {"\xFF", {}},
    };
    for (const auto& [query, found] : cases)
        EXPECT_EQ(ranking.find(query), found) << query;
}

TEST(FuzzyRankingTest, PutsTheBetterMatchFirst) {
    const auto order = [](std::vector<std::string> texts, const char* query) {
        return FuzzyRanking(texts).find(query);
    };
    EXPECT_THAT(order({"catalog", "log in"}, "log"), ElementsAre(1, 0)) << "a beginning before an inside";
    EXPECT_THAT(order({"close old tab", "close tab"}, "close tab"), ElementsAre(0, 1))
        << "equally good, in their order";
    EXPECT_THAT(order({"p r o j", "project"}, "proj"), ElementsAre(0, 1));
    EXPECT_THAT(order({}, "x"), IsEmpty());
    EXPECT_THAT(order({"", std::string(5000, 'a')}, "aaa"), ElementsAre(1));
}

}  // namespace
}  // namespace orvane
