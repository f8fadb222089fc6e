#include <gtest/gtest.h>

#include <tuple>

#include "OrvaneCore/Workspace/SurfaceList.h"
#include "OrvaneCore/Workspace/SurfaceTabs.h"

namespace orvane {
namespace {

Uuid tabID(char name) {
    std::array<std::uint8_t, 16> bytes{};
    bytes[15] = static_cast<std::uint8_t>(name);
    return Uuid(bytes);
}

std::vector<SurfaceMeta> strip(std::string_view names) {
    std::vector<SurfaceMeta> metas;
    for (const char name : names)
        metas.push_back({.id = tabID(name), .title = std::string(1, name)});
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

TEST(SurfaceListTest, closing) {
    const std::tuple<const char*, char, char, const char*> cases[] = {
        {"abc", 'b', 'b', "a[c]"}, {"abc", 'c', 'c', "a[b]"},  {"abc", 'a', 'c', "b[c]"},
        {"a", 'a', 'a', ""},       {"abc", 'x', 'b', "a[b]c"},
    };
    for (const auto& [names, closed, active, expected] : cases) {
        const auto result = SurfaceList::closing(tabID(closed), strip(names), tabID(active));
        EXPECT_EQ(text(result), expected) << names << " without " << closed;
        EXPECT_EQ(result.active.has_value(), !result.metas.empty()) << names;
    }
}

TEST(SurfaceListTest, moving) {
    const std::tuple<char, std::optional<Uuid>, const char*> cases[] = {
        {'c', tabID('a'), "cabd"}, {'a', tabID('d'), "bcad"}, {'b', std::nullopt, "acdb"}, {'d', std::nullopt, "abcd"},
        {'b', tabID('b'), "abcd"}, {'b', tabID('x'), "abcd"}, {'x', tabID('b'), "abcd"},
    };
    for (const auto& [moved, before, expected] : cases) {
        EXPECT_EQ(text({SurfaceList::moving(tabID(moved), before, strip("abcd")), {}}), expected) << moved;
    }
}

TEST(SurfaceListTest, filesOpenAsOnePreviewUntilTheyArePinned) {
    using enum SurfaceList::Pin;
    auto state = SurfaceList::opening("/p/one", "1", strip("ab"), no);
    EXPECT_EQ(text(state), "ab[1*]");
    state.metas.push_back({.id = tabID('c'), .title = "c"});
    state = SurfaceList::opening("/p/two", "2", state.metas, no);
    EXPECT_EQ(text(state), "ab[2*]c");
    const auto again = SurfaceList::opening("/p/two", "other", state.metas, no);
    EXPECT_EQ(again, state);
    state = SurfaceList::opening("/p/two", "2", state.metas, yes);
    EXPECT_EQ(text(state), "ab[2]c");
    state = SurfaceList::opening("/p/two", "2", state.metas, no);
    EXPECT_EQ(text(state), "ab[2]c") << "a pinned file stays pinned";
    state = SurfaceList::opening("/p/three", "3", state.metas, no);
    EXPECT_EQ(text(state), "ab2c[3*]");
    state = SurfaceList::opening("/p/four", "4", state.metas, yes);
    EXPECT_EQ(text(state), "ab2c3*[4]") << "a pinned file replaces no preview";
}

TEST(SurfaceListTest, findsByPlace) {
    const auto metas = strip("abc");
    EXPECT_EQ(SurfaceList::at(1, metas), tabID('a'));
    EXPECT_EQ(SurfaceList::at(3, metas), tabID('c'));
    for (const int outside : {-1, 0, 4})
        EXPECT_EQ(SurfaceList::at(outside, metas), std::nullopt) << outside;
    EXPECT_EQ(SurfaceList::neighbour(tabID('c'), metas, 1), tabID('a'));
    EXPECT_EQ(SurfaceList::neighbour(tabID('a'), metas, -1), tabID('c'));
    EXPECT_EQ(SurfaceList::neighbour(tabID('x'), metas, 1), std::nullopt);
    EXPECT_EQ(SurfaceList::neighbour(tabID('a'), {}, 1), std::nullopt);
}

TEST(SurfaceTabsTest, shareTheStrip) {
    const std::tuple<int, double, double, int> cases[] = {
        {0, 500, 220, 0}, {1, 500, 220, 1}, {3, 500, 496.0 / 3, 3}, {3, 292, 96, 3},    {3, 291.9, 96, 2},
        {3, 200, 96, 2},  {3, 10, 96, 1},   {3, -1e300, 96, 1},     {9, 1e300, 220, 9},
    };
    for (const auto& [count, available, width, visible] : cases) {
        EXPECT_DOUBLE_EQ(SurfaceTabs::width(count, available), width) << count << " in " << available;
        EXPECT_EQ(SurfaceTabs::visibleCount(count, available), visible) << count << " in " << available;
    }
    EXPECT_EQ(text({SurfaceTabs::overflow(strip("abcd"), 200), {}}), "cd");
    EXPECT_EQ(text({SurfaceTabs::overflow({}, 200), {}}), "");
}

TEST(SurfaceTabsTest, titles) {
    const std::array<const char*, 3> cases[] = {
        {" own \n", "/a/b", "own"},   {" \t\n", "/a/b.cpp", "b.cpp"}, {"", "/a/b/", "b"},
        {"", "3F2504E0", "fallback"}, {"", nullptr, "fallback"},
    };
    for (const auto& [given, payload, expected] : cases) {
        const auto path = payload == nullptr ? std::nullopt : std::optional<std::string>(payload);
        EXPECT_EQ(SurfaceTabs::title(given, path, "fallback"), expected) << '"' << given << '"';
    }
}

TEST(SurfaceMetaTest, keepsTheNewestOfAChatsPast) {
    SurfaceMeta meta{.id = tabID('a'), .kind = SurfaceKind::chat};
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
}

TEST(SurfaceMetaTest, renamingEndsTheAutomaticTitle) {
    const SurfaceMeta meta{.id = tabID('a'), .title = "old", .isAutoTitle = true};
    EXPECT_EQ(meta.renamed(" \n"), meta);
    EXPECT_EQ(meta.renamed(" new "), (SurfaceMeta{.id = tabID('a'), .title = "new", .isAutoTitle = false}));
}

}  // namespace
}  // namespace orvane
