#include <gtest/gtest.h>

#include "OrvaneCore/Workspace/SurfaceList.h"
#include "OrvaneCore/Workspace/SurfaceTabs.h"
#include "Support/PaneTrees.h"
#include "Support/Table.h"

namespace orvane::testing {
namespace {

std::vector<SurfaceMeta> strip(std::string_view names) {
    std::vector<SurfaceMeta> metas;
    for (const char name : names)
        metas.push_back({.id = content(name), .title = std::string(1, name)});
    return metas;
}

/// The titles in order, the active one in brackets; '*' behind a preview.
std::string text(const SurfaceSelection& selection) {
    std::string result;
    for (const SurfaceMeta& meta : selection.metas) {
        const std::string name = meta.title + (meta.isPreview ? "*" : "");
        result += meta.id == selection.active ? "[" + name + "]" : name;
    }
    return result;
}

TEST(SurfaceListTest, closesMovesAndFindsTabs) {
    for (const auto& [names, closed, active, expected] :
         table<4>("abc|b|b|a[c]; abc|c|c|a[b]; abc|a|c|b[c]; a|a|a|; abc|x|b|a[b]c")) {
        const auto result = SurfaceList::closing(content(closed[0]), strip(names), content(active[0]));
        EXPECT_EQ(text(result), expected) << names << " without " << closed;
        EXPECT_EQ(result.active.has_value(), !result.metas.empty()) << names;
    }
    for (const auto& [moved, before, expected] :
         table<3>("c|a|cabd; a|d|bcad; b||acdb; d||abcd; b|b|abcd; b|x|abcd; x|b|abcd")) {
        const auto place = before.empty() ? std::nullopt : std::optional(content(before[0]));
        EXPECT_EQ(text({SurfaceList::moving(content(moved[0]), place, strip("abcd")), {}}), expected) << moved;
    }
    const auto metas = strip("abc");
    for (const auto& [place, found] : {std::pair(1, 'a'), {3, 'c'}, {-1, '-'}, {0, '-'}, {4, '-'}})
        EXPECT_EQ(SurfaceList::at(place, metas), found == '-' ? std::nullopt : std::optional(content(found))) << place;
    EXPECT_EQ(SurfaceList::neighbour(content('c'), metas, 1), content('a'));
    EXPECT_EQ(SurfaceList::neighbour(content('a'), metas, -1), content('c'));
    EXPECT_EQ(SurfaceList::neighbour(content('x'), metas, 1), std::nullopt);
    EXPECT_EQ(SurfaceList::neighbour(content('a'), {}, 1), std::nullopt);
}

TEST(SurfaceListTest, filesOpenAsOnePreviewUntilTheyArePinned) {
    using enum SurfaceList::Pin;
    SurfaceSelection state{.metas = strip("ab")};
    for (const auto& [name, pin, expected] : table<3>(R"(
        1 | no | ab[1*] ; 2 | no | ab[2*] ; 2 | yes | ab[2] ; 2 | no | ab[2] ; 3 | no | ab2[3*] ; c | yes | ab23*[c]
        # the preview keeps its place, and a pinned file replaces none
        4 | no | ab2[4*]c ; 4 | no | ab2[4*]c)")) {
        state = SurfaceList::opening("/p/" + name, name, state.metas, pin == "yes" ? yes : no);
        EXPECT_EQ(text(state), expected) << name;
    }
    EXPECT_EQ(SurfaceList::opening("/p/4", "other title", state.metas, no), state);
}

TEST(SurfaceTabsTest, shareTheStripAndHaveTitles) {
    for (const auto& [count, room, width, visible] : table<4>(R"(
        0 | 500 | 220 | 0 ; 1 | 500 | 220 | 1 ; 3 | 500 | 165.33333333333334 | 3 ; 3 | 292 | 96 | 3 ; 3 | 291.9 | 96 | 2
        3 | 200 | 96 | 2 ; 3 | 10 | 96 | 1 ; 3 | -1e300 | 96 | 1 ; 9 | 1e300 | 220 | 9)")) {
        EXPECT_DOUBLE_EQ(SurfaceTabs::width(std::stoi(count), std::stod(room)), std::stod(width)) << count << room;
        EXPECT_EQ(SurfaceTabs::visibleCount(std::stoi(count), std::stod(room)), std::stoi(visible)) << count << room;
    }
    EXPECT_EQ(text({SurfaceTabs::overflow(strip("abcd"), 200), {}}), "cd");
    EXPECT_EQ(text({SurfaceTabs::overflow({}, 200), {}}), "");
    for (const auto& [given, payload, expected] :
         table<3>("\t own \t|/a/b|own; \t|/a/b.cpp|b.cpp; |/a/b/|b; |3F2504E0|fallback; ||fallback")) {
        const auto path = payload.empty() ? std::nullopt : std::optional(payload);
        EXPECT_EQ(SurfaceTabs::title(given, path, "fallback"), expected) << '"' << given << '"';
    }
}

TEST(SurfaceMetaTest, keepsTheNewestOfAChatsPast) {
    SurfaceMeta meta{.id = content('a'), .kind = SurfaceKind::chat};
    for (int turn = 0; turn < 50; ++turn) {
        const std::string number = std::to_string(turn);
        const Date at{turn * 1.0};
        meta = meta.appendingHistory({"/t/" + number, "claude", at}).appendingHistory({"/t/" + number, "codex", at});
        meta = meta.appendingModelMark({at, std::nullopt, number}).appendingModelMark({at, "x", number});
        meta = meta.appendingNote({at, number}).appendingNote({at, number});
    }
    ASSERT_EQ(meta.chatHistory.size(), 12U);
    EXPECT_EQ(meta.chatHistory.front(), (ChatHistorySegment{"/t/38", "claude", Date{38}}));
    ASSERT_EQ(meta.chatModelMarks.size(), 40U);
    EXPECT_EQ(meta.chatModelMarks.front().to, "10");
    ASSERT_EQ(meta.chatNotes.size(), 40U);
    EXPECT_EQ(meta.chatNotes.front().text, "30") << "equal notes are both kept";
    EXPECT_EQ(meta.appendingModelMark({Date{60}, "49", "10"}).chatModelMarks.back().to, "10")
        << "only the last mark counts";
    EXPECT_EQ(SurfaceMeta::decode(meta.encode()), meta);

    meta = {.id = content('a'), .title = "old", .isAutoTitle = true};
    EXPECT_EQ(meta.renamed(" \n"), meta);
    EXPECT_EQ(meta.renamed(" new "), (SurfaceMeta{.id = content('a'), .title = "new", .isAutoTitle = false}));
}

}  // namespace
}  // namespace orvane::testing
