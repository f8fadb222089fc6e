#include "OrvaneCore/Support/Regex.h"

#include <gtest/gtest.h>

#include <thread>

namespace orvane {
namespace {

using Strings = std::vector<std::string>;

Regex compiled(std::string_view pattern, Regex::Options options = {}) {
    auto regex = Regex::compile(pattern, options);
    EXPECT_TRUE(regex) << pattern << ": " << (regex ? "" : regex.error().message);
    return regex ? *regex : *Regex::compile("(?!)");
}

Strings textsOf(const Regex::Matches& matches) {
    Strings texts;
    for (const auto& match : matches.found)
        texts.emplace_back(match.whole().text);
    return texts;
}

std::string repeated(std::string_view text, std::size_t count) {
    std::string result;
    for (; count > 0; --count)
        result += text;
    return result;
}

TEST(RegexTest, findsAllMatchesFromLeftToRight) {
    const std::vector<std::tuple<std::string, Regex::Options, std::string, Strings>> cases = {
        {"b+", {}, "abbab", {"bb", "b"}},
        {"x", {}, "", {}},
        {"", {}, "é€", {"", "", ""}},  // between characters, not between bytes
        {"a*", {}, "baac", {"", "aa", "", ""}},
        {"|a", {}, "aa", {"", "a", "", "a", ""}},
        {"a\\K", {}, "aa", {"", ""}},
        {"(?=ab)|b", {}, "abab", {"", "b", "", "b"}},
        {"^.*$", {.multiline = true}, "a\r\nb\nc", {"a", "b", "c"}},
        {"^.", {}, "a\nb", {"a"}},
        {"ÉCOLE|straße", {.ignoresCase = true}, "école STRASSE Straße", {"école", "Straße"}},
        {"\\w+", {}, "naïve 東京-1", {"naïve", "東京", "1"}},
        {".", {}, "a\xFF\xE2\x82z👨", {"a", "z", "👨"}},
        // The start of these "matches" lies behind their end; they must not be taken, nor keep the walk in place.
        {"(?=(?&k))(?(DEFINE)(?<k>ab\\K))", {}, "abab", {}}};
    for (const auto& [pattern, options, subject, expected] : cases) {
        const auto matches = compiled(pattern, options).allMatches(subject);
        EXPECT_EQ(textsOf(matches), expected) << pattern << " over " << testing::PrintToString(subject);
        EXPECT_FALSE(matches.limitExceeded) << pattern;
        EXPECT_EQ(compiled(pattern, options).matches(subject), !expected.empty()) << pattern;
    }
    EXPECT_EQ(textsOf(compiled("a").allMatches("aaaa", 2)), (Strings{"a", "a"}));
}

TEST(RegexTest, givesGroupsAndTheirRanges) {
    const Regex regex = compiled("(\\d+)(?:-(\\d+))?(x)?");
    const std::vector<std::optional<Regex::Group>> groups = {
        Regex::Group{3, 5, "12"}, Regex::Group{3, 5, "12"}, {}, {}};
    ASSERT_TRUE(regex.firstMatch("é 12"));
    EXPECT_EQ(regex.firstMatch("é 12")->groups, groups);
    EXPECT_EQ(compiled(repeated("(.)", 300)).firstMatch(repeated("ab", 150))->groups[300]->text, "b");

    const std::tuple<std::string, std::size_t, std::optional<std::size_t>> starts[] = {
        {"a", 0, 0}, {"a", 1, 3}, {"", 2, 3}, {"é", 2, {}}, {"$", 4, 4}, {"", 5, {}}, {"(?<=a)é", 1, 1}, {"^", 1, {}}};
    for (const auto& [pattern, from, begin] : starts) {
        const auto match = compiled(pattern).firstMatch("aéa", from);  // the bytes 1 and 2 are one character
        EXPECT_EQ(match ? std::optional(match->whole().begin) : std::nullopt, begin) << pattern << " from " << from;
    }
}

TEST(RegexTest, tellsWhereAPatternIsWrong) {
    const std::pair<std::string, std::size_t> cases[] = {
        {"a(b", 3},
        {"[z-a]", 3},
        {"é*+*", 4},
        {"\\C", 2},
        {"a\xFF", 1},
        {repeated("(", 300) + repeated(")", 300), 251},
        {repeated("x", Regex::maximumPatternLength + 1), Regex::maximumPatternLength}};
    for (const auto& [pattern, offset] : cases) {
        const auto regex = Regex::compile(pattern);
        ASSERT_FALSE(regex) << pattern;
        EXPECT_EQ(regex.error().offset, offset) << pattern << ": " << regex.error().message;
        EXPECT_FALSE(regex.error().message.empty()) << pattern;
    }
    EXPECT_FALSE(Regex::compile("(?:(?:a{1,999}){1,999}){1,999}"));
}

TEST(RegexTest, noPatternRunsAway) {
    const std::string longRun = repeated("a", 300'000);
    const std::pair<std::string, std::string> cases[] = {{"(a+)+$", repeated("a", 40) + "b"},
                                                         {"(?:a|a)*$", repeated("a", 200) + "b"},
                                                         {"(?:\\w*\\s*)*[!?]$", repeated("word ", 100)},
                                                         {"a[^x]*[cd]", longRun},
                                                         {"(\\w+)\\s\\1[;:]", longRun},
                                                         {"(?:[ab]|[bc])*[de]", longRun},
                                                         {"^(?:(?R)|a)$", repeated("a", 1000)},
                                                         {"(?:.*,){20}[xy]", repeated("1,", 400)}};
    // Any one of them would take minutes or years without a limit.
    for (const auto& [pattern, subject] : cases) {
        const Regex regex = compiled(pattern);
        EXPECT_EQ(regex.test(subject), Regex::Outcome::limitExceeded) << pattern;
        EXPECT_FALSE(regex.firstMatch(subject)) << pattern;
        EXPECT_TRUE(regex.allMatches(subject).limitExceeded) << pattern;
    }
}

TEST(RegexTest, aLimitDoesNotReachHonestPatterns) {
    const std::string log =
        repeated("2026-11-21 09:30:00 [worker-7] info: compiled Sources/Text.cpp in 1.25 s\n", 20'000);
    const auto matches =
        compiled("^.*\\[(\\S+)\\].*: (.*\\.cpp) in (\\d+(?:\\.\\d+)?) s$", {.multiline = true}).allMatches(log);
    EXPECT_EQ(matches.found.size(), 20'000U);
    EXPECT_FALSE(matches.limitExceeded);
    EXPECT_EQ(compiled("error|warning.*unused").test(log), Regex::Outcome::noMatch);
    EXPECT_EQ(compiled("(?:.*,)*x").test(repeated("1234567,", 2'000)), Regex::Outcome::noMatch);
}

TEST(RegexTest, servesSeveralThreadsAtOnce) {
    const Regex regex = compiled("(\\w+)@(\\w+)");
    std::vector<std::size_t> found(4);
    {
        std::vector<std::jthread> threads;
        for (auto& count : found)
            threads.emplace_back([&] { count = Regex(regex).allMatches(repeated("me@home ", 2'500)).found.size(); });
    }
    EXPECT_EQ(found, std::vector<std::size_t>(4, 2'500));
}

}  // namespace
}  // namespace orvane
