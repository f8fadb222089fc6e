#include "OrvaneCore/History/HistorySearch.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "OrvaneCore/History/HistoryDates.h"
#include "OrvaneCore/History/HistoryIds.h"
#include "OrvaneCore/History/SessionHistory.h"
#include "OrvaneCore/Support/WhenLabeler.h"

namespace orvane {
namespace {

using SessionHistory::Sort;
using SessionHistory::SortField;

std::string ids(const std::vector<SessionRecord>& records) {
    std::string all;
    for (const SessionRecord& record : records)
        all += record.id;
    return all;
}

const std::vector<SessionRecord>& library() {
    using enum TranscriptProvider;
    static const std::vector<SessionRecord> records = {
        {.id = "a",
         .provider = claude,
         .projectPath = "/w/shop",
         .title = "Fix the login form",
         .lastActivityAt = {10},
         .messageCount = 3,
         .preview = "Fix the login form · now test"},
        {.id = "b",
         .provider = codex,
         .projectPath = "/w/login",
         .title = "Résumé parser",
         .lastActivityAt = {20},
         .messageCount = 9,
         .preview = "form of the login"},
        {.id = "c",
         .provider = gemini,
         .projectPath = "/w/Shop",
         .title = "the form",
         .lastActivityAt = {30},
         .messageCount = 3,
         .preview = "INDEX the login form ＦＵＬＬ"},
    };
    return records;
}

TEST(HistorySearchTest, everyWordCountsWhereItStandsBest) {
    const struct {
        HistoryQuery query;
        const char* found;
    } cases[] = {
        {{.text = "  "}, "cba"},
        {{.text = "login"}, "abc"},           // title 3, project 2, prompt 1
        {{.text = "form"}, "cab"},            // two titles, the newer first
        {{.text = "login form"}, "acb"},      // as a phrase in a title, in prompts, not at all
        {{.text = "FORM login nosuch"}, ""},  // each of them
        {{.text = "resume"}, "b"},            // accents
        {{.text = "full"}, "c"},              // width
        {{.text = "/w/shop"}, "ca"},          // the path of a project
        {{.text = "index", .locale = "tr"}, ""},
        {{.text = "ındex", .locale = "tr"}, "c"},
        {{.text = "", .provider = TranscriptProvider::codex}, "b"},
        {{.text = "", .projectPath = "/w/shop"}, "a"},
        {{.text = "", .from = Date{20}}, "cb"},
        {{.text = "form", .from = Date{10}, .to = Date{20}}, "ab"},
    };
    for (const auto& [query, found] : cases)
        EXPECT_EQ(ids(SessionHistory::search(library(), query)), found) << query.text;
    std::stop_source stop;
    stop.request_stop();
    EXPECT_TRUE(HistorySearch(library(), "").find({}, stop.get_token()).empty());
}

TEST(HistorySearchTest, sortsByAnyFieldAndThenByRecency) {
    const struct {
        Sort sort;
        const char* order;
    } cases[] = {
        {Sort::byRecency, "cba"},
        {{SortField::lastActivity, true}, "abc"},
        {{SortField::title, true}, "abc"},
        {{SortField::project, true}, "bca"},
        {{SortField::provider, false}, "cba"},
        {{SortField::messages, false}, "bca"},
        {{SortField::messages, true}, "cab"},
    };
    for (const auto& [sort, order] : cases)
        EXPECT_EQ(ids(SessionHistory::sorted(library(), sort)), order) << rawValue(sort.field);
}

TEST(HistorySearchTest, daysAreThoseOfTheCalendar) {
    const auto at = [](const char* text) { return *Date::parseIso8601(text); };
    const std::vector<SessionRecord> records = {{.id = "a", .lastActivityAt = at("2026-03-28T22:59:00Z")},
                                                {.id = "b", .lastActivityAt = at("2026-03-29T21:59:00Z")},
                                                {.id = "c", .lastActivityAt = at("2026-03-28T23:00:00Z")}};
    const auto days = SessionHistory::groupByDay(records, Calendar("Europe/Paris"));
    ASSERT_EQ(days.size(), 2U);
    EXPECT_EQ(days[0].day, at("2026-03-28T23:00:00Z"));  // of 23 hours: the clocks change
    EXPECT_EQ(ids(days[0].records), "bc");
    EXPECT_EQ(ids(days[1].records), "a");
    EXPECT_EQ(SessionHistory::groupByDay(records, Calendar("Nowhere/Land")).size(), 2U);
}

TEST(HistoryDatesTest, datesAreReadAsPeopleWriteThem) {
    const Calendar paris("Europe/Paris");
    const Date now = *Date::parseIso8601("2026-11-21T12:00:00Z");
    const auto read = [&](std::string_view text, HistoryDates::Bound bound = HistoryDates::Bound::since) {
        const auto date = HistoryDates::parse(text, bound, now, paris);
        return date ? date->iso8601() : "none";
    };
    EXPECT_EQ(read("2d"), "2026-11-19T12:00:00.000Z");
    EXPECT_EQ(read("90m"), "2026-11-21T10:30:00.000Z");
    EXPECT_EQ(read("3w"), "2026-10-31T12:00:00.000Z");
    EXPECT_EQ(read("2026-11-20"), "2026-11-19T23:00:00.000Z");
    EXPECT_EQ(read("2026-11-20", HistoryDates::Bound::until), "2026-11-20T22:59:59.999Z");
    EXPECT_EQ(read("2026-11-20T10:00:00+02:00"), "2026-11-20T08:00:00.000Z");
    for (const char* text : {"", "d", "2", "-2d", "2x", "2 d", "99999999999d", "2026-02-30", "2026-13-01", "0000-01-01",
                             "2026-1-1", "20261-1-01", "yesterday"})
        EXPECT_EQ(read(text), "none") << text;
}

TEST(WhenLabelerTest, sayWhenAsShortAsCanBe) {
    const Date now = *Date::parseIso8601("2026-11-21T12:00:00Z");
    const auto label = [&](Language language, const char* date) {
        return WhenLabeler(language, Calendar("UTC"), now).label(*Date::parseIso8601(date));
    };
    EXPECT_EQ(label(Language::en, "2026-11-21T08:05:00Z"), "08:05");
    EXPECT_EQ(label(Language::en, "2026-11-20T23:59:00Z"), "Friday");
    EXPECT_EQ(label(Language::en, "2026-11-15T00:00:00Z"), "Sunday");
    EXPECT_EQ(label(Language::en, "2026-11-14T23:59:00Z"), "14 Nov");
    EXPECT_EQ(label(Language::en, "2026-11-22T00:00:00Z"), "22 Nov");
    EXPECT_EQ(label(Language::de, "2026-11-20T12:00:00Z"), "Freitag");
    EXPECT_EQ(label(Language::zhHans, "2026-11-20T12:00:00Z"), "星期五");
}

TEST(HistoryIdsTest, anyUniqueBeginningWillDo) {
    const std::vector<SessionRecord> records = {{.id = "ABCdef-one", .lastActivityAt = {1}},
                                                {.id = "abcdef-two"},
                                                {.id = "abcdef-one", .provider = TranscriptProvider::codex},
                                                {.id = "lone", .filePath = "/old"},
                                                {.id = "lone", .lastActivityAt = {5}, .filePath = "/copy"},
                                                {.id = "lone-star"}};
    const auto place = [&](std::string_view prefix) {
        const auto found = HistoryIds::resolve(prefix, records);
        if (found) return std::to_string(*found);
        return std::string(found.error() == IdPrefix::Error::none ? "none" : "several");
    };
    EXPECT_EQ(place("abcdef-t"), "1");
    EXPECT_EQ(place("abcdef-one"), "several");
    EXPECT_EQ(place("LONE"), "4");
    EXPECT_EQ(place("lon"), "several");
    EXPECT_EQ(place(""), "none");
    EXPECT_EQ(place("x"), "none");
    EXPECT_EQ(HistoryIds::distinguishingLength(records), 8U);
    EXPECT_EQ(HistoryIds::distinguishingLength({{.id = "0123456789a"}, {.id = "0123456789b"}}), 11U);
}

}  // namespace
}  // namespace orvane
