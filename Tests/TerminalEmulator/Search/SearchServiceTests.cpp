#include "TerminalEmulator/SearchService.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <vector>

#include "TerminalEmulator/Buffer/BufferNotation.h"

namespace orvane::testing {
namespace {

struct Screen {
    Screen(int cols, int rows, std::optional<int> scrollback) : buffer(cols, rows, 8, scrollback) {
        buffer.fillViewportRows();
    }
    explicit Screen(std::u32string_view text, int cols = 20, int rows = 5, std::optional<int> scrollback = 1000)
        : Screen(cols, rows, scrollback) {
        type(buffer, text);
    }

    ClusterTable clusters;
    Buffer buffer;
    SearchService search{buffer, clusters};

    /// "row,col-row,col text" of each hit, the ends behind the last cells; or the error.
    std::string all(std::string_view term, const SearchOptions& options = {}) {
        const auto found = search.findAll(term, options);
        if (!found) return "error: " + found.error().message;
        std::string text;
        for (const SearchResult& hit : found->hits)
            text += (text.empty() ? "" : "; ") + describe(hit);
        return text;
    }

    static std::string describe(const SearchResult& hit) {
        const auto place = [](Position at) { return std::to_string(at.row) + "," + std::to_string(at.col); };
        return place(hit.start) + "-" + place(hit.end) + " " + hit.text;
    }
    static std::string describe(const SearchService::Found& found) {
        if (!found) return "error: " + found.error().message;
        return *found ? describe(**found) : "none";
    }
};

TEST(SearchServiceTests, HitsAreCellsOfTheRowsThatALineTakes) {
    struct Case {
        std::u32string_view typed;
        std::string_view term;
        SearchOptions options;
        std::string_view hits;
    };
    const SearchOptions exact{.caseSensitive = true};
    const SearchOptions words{.wholeWord = true};
    const SearchOptions regex{.regex = true};
    const std::vector<Case> cases = {
        {U"one two\nTwo", "two", {}, "0,4-0,7 two; 1,0-1,3 Two"},
        {U"one two\nTwo", "Two", exact, "1,0-1,3 Two"},
        {U"a.c abc", "a.c", {}, "0,0-0,3 a.c"},
        {U"a.c abc", "a.c", regex, "0,0-0,3 a.c; 0,4-0,7 abc"},
        {U"aaaa", "aa", {}, "0,0-0,2 aa; 0,2-0,4 aa"},
        {U"cat concat cat_ -cat-", "cat", words, "0,0-0,3 cat; 1,7-1,10 cat"},
        {U"x --all --allx", "--all", words, "0,2-0,7 --all"},
        {U"\\E.\\Q \\Ex", "\\E.", words, "0,0-0,3 \\E."},
        // Ten columns: hits over the ends of rows.
        {U"0123456789abcdef", "89ab", {}, "0,8-1,2 89ab"},
        {U"012345678一二3", "8一二3", {}, "0,8-1,5 8一二3"},
        {U"一二三", "二", {}, "0,2-0,4 二"},
        {U"ÄÖ straße", "äö STRA", {}, "0,0-0,7 ÄÖ stra"},
        {U"first\nlast", "first.*last", regex, ""},
        {U"ab\nab", "^a|b$", regex, "0,0-0,1 a; 0,1-0,2 b; 1,0-1,1 a; 1,1-1,2 b"},
        {U"abc", "x*", regex, ""},
        {U"foobar", "foo\\Kbar", regex, "0,3-0,6 bar"},
        {U"a b", "", {}, ""},
    };
    for (const Case& test : cases) {
        Screen screen(test.typed, 10);
        EXPECT_EQ(screen.all(test.term, test.options), test.hits) << test.term;
        const std::size_t count = screen.search.findAll(test.term, test.options)->hits.size();
        EXPECT_EQ(screen.search.hitCount(test.term, test.options), count) << test.term;
    }
}

TEST(SearchServiceTests, ClustersAndColumnsNeverWrittenAreText) {
    Screen screen(10, 2, 10);
    const std::int32_t e = screen.clusters.charToIndex("e\xCC\x81");
    screen.buffer.line(0).writeCell(0, 'x', 1, {});
    screen.buffer.line(0).writeCell(3, e, 1, {});
    screen.buffer.line(0).writeCell(4, 'y', 1, {});
    EXPECT_EQ(screen.all("x  e\xCC\x81y"), "0,0-0,5 x  e\xCC\x81y");
    EXPECT_EQ(screen.all("y"), "0,4-0,5 y");
}

TEST(SearchServiceTests, BadTermsAreErrorsAndLeaveTheStateAlone) {
    Screen screen(U"aaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaa!", 200);
    ASSERT_TRUE(screen.search.findNext("a", {}));
    const SearchState before = screen.search.state();
    using enum SearchError::Code;
    const std::vector<std::pair<std::string, SearchError::Code>> cases = {
        {"a(b", invalidTerm},
        {"a)(b", invalidTerm},
        {"[", invalidTerm},
        {"\xFF\xFE", invalidTerm},
        {"*a", invalidTerm},
        {std::string(1025, 'a'), termTooLong},
        {"(a+)+b|(a|aa)+$", limitExceeded},
        {".*.*.*.*.*.*.*.*[xy]", limitExceeded},
    };
    for (const auto& [term, code] : cases) {
        for (const bool wholeWord : {false, true}) {
            const SearchOptions options{.regex = true, .wholeWord = wholeWord};
            const auto found = screen.search.findNext(term, options);
            ASSERT_FALSE(found) << term;
            EXPECT_EQ(found.error().code, code) << term;
            EXPECT_FALSE(found.error().message.empty()) << term;
            EXPECT_FALSE(screen.search.findAll(term, options)) << term;
            EXPECT_FALSE(screen.search.findPrevious(term, options)) << term;
        }
    }
    EXPECT_EQ(screen.search.state(), before);
}

TEST(SearchServiceTests, NextAndPreviousGoRound) {
    Screen screen(U"a1 a2\nb\na3\n\n\n\n\n\na4");
    SearchService& search = screen.search;
    const SearchOptions regex{.regex = true};
    const std::string first = "0,0-0,2 a1", second = "0,3-0,5 a2", third = "2,0-2,2 a3", fourth = "8,0-8,2 a4";
    // The view starts at row 4.
    EXPECT_EQ(Screen::describe(search.findNext("a\\d", regex)), fourth);
    EXPECT_FALSE(search.state().hasWrapped);
    EXPECT_EQ(Screen::describe(search.findNext()), first);
    EXPECT_TRUE(search.state().hasWrapped);
    EXPECT_EQ(Screen::describe(search.findNext()), second);
    EXPECT_EQ(Screen::describe(search.findNext()), third);
    EXPECT_EQ(Screen::describe(search.findPrevious()), second);
    EXPECT_EQ(Screen::describe(search.findPrevious()), first);
    EXPECT_EQ(Screen::describe(search.findPrevious()), fourth);
    EXPECT_TRUE(search.state().hasWrapped);
    // A term that grows stays at its hit as long as it can.
    EXPECT_EQ(Screen::describe(search.findPrevious("a", {})), "8,0-8,1 a");
    EXPECT_EQ(Screen::describe(search.findPrevious("a4", {})), fourth);
    EXPECT_EQ(Screen::describe(search.findNext("a4", {})), fourth);
    EXPECT_EQ(Screen::describe(search.findNext("a4x", {})), "none");
    EXPECT_EQ(Screen::describe(search.findNext("a", {})), "8,0-8,1 a");
}

TEST(SearchServiceTests, ASearchStartsWhereItIsToldToOnceAndRowsHaveTheHitsThatShowInThem) {
    Screen screen(U"ab 0\nab 1\nab abcdefghijklmnopqrstuv ab\nab 4", 10, 8);
    const auto from = [&](Position at) -> SearchService& {
        screen.search.startAt(at);
        return screen.search;
    };
    EXPECT_EQ(Screen::describe(from({1, 0}).findNext("ab", {})), "1,0-1,2 ab");
    EXPECT_EQ(Screen::describe(from({1, 1}).findNext("ab", {})), "2,0-2,2 ab");
    EXPECT_EQ(Screen::describe(from({1, 0}).findPrevious("ab", {})), "0,0-0,2 ab");
    EXPECT_EQ(Screen::describe(screen.search.findNext()), "1,0-1,2 ab") << "then it goes on from the last hit";
    const auto all = screen.search.findAll("ab|g.*u", {.regex = true});
    ASSERT_TRUE(all.has_value());
    ASSERT_EQ(all->hits.size(), 7U);
    for (int first = 0; first < screen.buffer.count(); ++first) {
        for (int last = first; last < screen.buffer.count(); ++last) {
            std::vector<SearchResult> wanted;
            std::ranges::copy_if(all->hits, std::back_inserter(wanted), [&](const SearchResult& hit) {
                return hit.start.row <= last && hit.end.row >= first;
            });
            const auto shown = screen.search.findWithin("ab|g.*u", {.regex = true}, first, last);
            ASSERT_TRUE(shown.has_value());
            EXPECT_EQ(shown->hits, wanted) << first << " to " << last;
        }
    }
}

TEST(SearchServiceTests, AHitIsFoundAgainOrKnownToBeStale) {
    Screen screen(U"gone\nkept\nmore", 10, 3, 2);
    const auto hits = screen.search.findAll("gone|kept|more", {.regex = true}).value().hits;
    const auto places = [&] {
        std::string text;
        for (const SearchResult& hit : hits) {
            const auto now = screen.search.located(hit);
            text += now ? std::to_string(now->start.row) : "-";
        }
        return text;
    };
    EXPECT_EQ(places(), "012");
    type(screen.buffer, U"\n1\n2\n3");  // one row more than the history takes
    EXPECT_EQ(places(), "-01");
    EXPECT_EQ(screen.all("kept"), "0,0-0,4 kept");
    screen.buffer.resize(12, 3);
    EXPECT_EQ(places(), "---");
    screen.buffer.clear();
    screen.buffer.fillViewportRows();
    EXPECT_EQ(places(), "---");
    EXPECT_EQ(screen.all("kept"), "");

    type(screen.buffer, U"new");
    const auto fresh = screen.search.findNext("new", {}).value().value();
    EXPECT_TRUE(screen.search.located(fresh));
    screen.buffer.line(0).writeCell(1, 'o', 1, {});
    EXPECT_FALSE(screen.search.located(fresh));
    Screen other(U"another new");
    screen.search.setBuffer(other.buffer);
    EXPECT_EQ(Screen::describe(screen.search.findNext()), "0,8-0,11 new");
}

TEST(SearchServiceTests, ListsOfHitsAreBounded) {
    Screen screen(std::u32string(SearchService::maximumHits, U'a'), 100, 5, 1000);
    EXPECT_FALSE(screen.search.findAll("a", {})->isTruncated);
    type(screen.buffer, U"a");
    EXPECT_EQ(screen.search.findAll("a", {})->hits.size(), SearchService::maximumHits);
    EXPECT_TRUE(screen.search.findAll("a", {})->isTruncated);
    EXPECT_EQ(screen.search.hitCount("a", {}), SearchService::maximumHits + 1);
}

}  // namespace
}  // namespace orvane::testing
