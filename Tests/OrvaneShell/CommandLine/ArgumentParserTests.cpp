#include "OrvaneShell/CommandLine/ArgumentParser.h"

#include <gtest/gtest.h>

#include <tuple>

namespace orvane {
namespace {

using Kind = Parameter::Kind;
using Words = std::vector<std::string>;

/// "verb A [B] [--option V] [--each E]… [--flag]"
const Verb verb{.name = "verb",
                .parameters = {{.kind = Kind::required, .name = "FIRST"},
                               {.kind = Kind::optional, .name = "SECOND"},
                               {.kind = Kind::option, .name = "--option", .valueName = "V"},
                               {.kind = Kind::repeated, .name = "--each", .valueName = "E"},
                               {.kind = Kind::flag, .name = "--flag"}}};

/// "first=a second=b --flag", by name.
std::string text(const Arguments& arguments) {
    std::string result;
    for (const auto& [name, value] : arguments.values)
        result += name + "=" + value + " ";
    for (const auto& [name, values] : arguments.lists) {
        for (const std::string& value : values)
            result += name + "+" + value + " ";
    }
    for (const std::string& flag : arguments.flags)
        result += "--" + flag + " ";
    return result;
}

TEST(ArgumentParserTest, readsWordsOptionsAndFlagsInAnyOrder) {
    const std::pair<Words, const char*> cases[] = {
        {{"a"}, "first=a "},
        {{"a", "b"}, "first=a second=b "},
        {{"--flag", "a"}, "first=a --flag "},
        {{"--option", "o", "a", "b", "--flag"}, "first=a option=o second=b --flag "},
        {{"a", "--option", "o", "b"}, "first=a option=o second=b "},
        {{"--option=o p", "a"}, "first=a option=o p "},
        {{"--option=", "a"}, "first=a option= "},  // a script's empty variable
        {{"--option", "", "a"}, "first=a option= "},
        {{"--option", "--flag", "a"}, "first=a option=--flag "},
        {{"a", "--option=-o"}, "first=a option=-o "},
        {{"--option", "1", "a", "--option", "2"}, "first=a option=2 "},
        {{"--flag", "--flag", "a"}, "first=a --flag "},
        {{"--", "--option="}, "first=--option= "},
        {{"--each", "2", "a", "--each=1", "b", "--each", "2"}, "first=a second=b each+2 each+1 each+2 "},
        {{"--each=", "a", "--each", ""}, "first=a each+ each+ "},
        {{"--each", "[a,b]", "--each", "x,y z", "a", "--each=--flag"}, "first=a each+[a,b] each+x,y z each+--flag "},
        {{"--", "--flag", "--unknown"}, "first=--flag second=--unknown "},
        {{"--flag", "--", "-a"}, "first=-a --flag "},
        {{"日本", "a\nb"}, "first=日本 second=a\nb "},
        {{""}, "first= "},
    };
    for (const auto& [words, expected] : cases) {
        const auto arguments = parseArguments(verb, words, L10n());
        ASSERT_TRUE(arguments) << ::testing::PrintToString(words) << arguments.error();
        EXPECT_EQ(text(*arguments), expected) << ::testing::PrintToString(words);
    }
    const auto none = parseArguments(Verb{.name = "none"}, {}, L10n());
    ASSERT_TRUE(none);
    EXPECT_EQ(none->value("first"), "");
}

TEST(ArgumentParserTest, saysWhatIsWrong) {
    const std::tuple<Words, const char*, const char*> cases[] = {
        {{}, "usage.missing", "FIRST"},
        {{"--flag"}, "usage.missing", "FIRST"},
        {{"a", "b", "c"}, "usage.unexpected", "c"},
        {{"a", "--unknown"}, "usage.unexpected", "--unknown"},
        {{"a", "-x"}, "usage.unexpected", "-x"},
        {{"a", "--option"}, "usage.valueMissing", "--option"},
        {{"a", "--each", "e", "--each"}, "usage.valueMissing", "--each"},
        {{"a", "--flags"}, "usage.unexpected", "--flags"},
    };
    for (const Language language : {Language::en, Language::ja}) {
        const L10n l10n{language};
        for (const auto& [words, key, named] : cases) {
            const auto arguments = parseArguments(verb, words, l10n);
            ASSERT_FALSE(arguments) << ::testing::PrintToString(words) << text(*arguments);
            EXPECT_EQ(arguments.error(), l10n.text(key, named)) << ::testing::PrintToString(words);
        }
    }
}

}  // namespace
}  // namespace orvane
