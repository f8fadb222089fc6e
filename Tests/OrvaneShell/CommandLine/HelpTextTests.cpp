#include "OrvaneShell/CommandLine/HelpText.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <sstream>

#include "OrvaneCore/Support/Text.h"
#include "OrvaneShell/CommandLine/VerbTable.h"

namespace orvane {
namespace {

/// Whether the table has the key, and in this very language: an absent text is the key, or falls back to English.
bool hasText(Language language, const std::string& key) {
    const std::string text = L10n{language}.text(key);
    return text != key && (language == Language::en || text != L10n{Language::en}.text(key));
}

TEST(HelpTextTest, everyVerbAndParameterForPeopleIsExplainedInEveryLanguage) {
    for (const auto& [language, name] : RawValues<Language>::table) {
        const L10n l10n{language};
        const std::string overview = HelpText::overview(l10n);
        for (const Verb& verb : verbTable()) {
            const std::string key = HelpText::summaryKey(verb);
            const std::string line = "\n  " + std::string(verb.name) + " ";
            EXPECT_EQ(overview.contains(line), !verb.isHidden) << name << " " << verb.name;
            if (verb.isHidden) continue;
            EXPECT_TRUE(hasText(language, key)) << name << " " << key;
            const std::string help = HelpText::of(verb, l10n);
            EXPECT_TRUE(help.contains(l10n.text(key))) << help;
            for (const Parameter& parameter : verb.parameters) {
                if (parameter.textKey.empty()) continue;
                EXPECT_TRUE(hasText(language, std::string(parameter.textKey))) << name << " " << parameter.textKey;
                EXPECT_TRUE(help.contains("  " + std::string(parameter.name))) << help;
                EXPECT_TRUE(help.contains(Text::oneLine(l10n.text(parameter.textKey)))) << help;
            }
        }
    }
}

TEST(HelpTextTest, theUsageBracketsWhatMayBeLeftOut) {
    const Verb verb{.name = "verb",
                    .parameters = {{.kind = Parameter::Kind::required, .name = "A", .textKey = "a"},
                                   {.kind = Parameter::Kind::optional, .name = "B", .textKey = "b"},
                                   {.kind = Parameter::Kind::option, .name = "--c", .valueName = "C", .textKey = "c"},
                                   {.kind = Parameter::Kind::repeated, .name = "--e", .valueName = "E", .textKey = "e"},
                                   {.kind = Parameter::Kind::flag, .name = "--d", .textKey = "d"},
                                   {.kind = Parameter::Kind::flag, .name = "--ours"}}};
    EXPECT_EQ(HelpText::usage(verb), "verb A [B] [--c C] [--e E]… [--d]");
}

TEST(HelpTextTest, theLongestNameIsTheVerb) {
    const auto nameOf = [](const std::vector<std::string>& words) {
        const Verb* verb = verbOf(words);
        return verb == nullptr ? "" : std::string(verb->name);
    };
    const std::pair<std::vector<std::string>, const char*> cases[] = {
        {{"agents"}, "agents"},
        {{"agents", "--json"}, "agents"},
        {{"agents", "add"}, "agents add"},
        {{"agents", "add", "remove"}, "agents add"},
        {{"agents", "nosuch"}, ""},
        {{"terminal"}, ""},
        {{"terminal", "feed"}, "terminal feed"},
        {{"open", "add"}, "open"},
        {{"list", "more"}, "list"},
        {{}, ""},
    };
    for (const auto& [words, name] : cases)
        EXPECT_EQ(nameOf(words), name) << ::testing::PrintToString(words);
    const std::string help = HelpText::of(*verbOf(std::vector<std::string>{"agents"}), L10n());
    EXPECT_TRUE(help.contains("\n  agents add NAME")) << help;
    EXPECT_TRUE(HelpText::unknownVerb({"agents", "nosuch"}, L10n()).contains("add, edit, remove"));
    EXPECT_TRUE(HelpText::unknownVerb({"terminal"}, L10n()).contains("feed, run"));
}

/// A line of the manual page that begins with '.' is a request, and only requests that we mean may stand there; what
/// begins with ' is one too; a backslash begins an escape, and a bare hyphen would be a typographic one.
TEST(HelpTextTest, theManualPageHoldsOnlyTheRequestsThatItMeans) {
    const std::set<std::string> requests = {".TH", ".SH", ".SS", ".TP", ".B", ".I"};
    const std::string escapes = "-e&";
    for (const auto& [language, name] : RawValues<Language>::table) {
        std::istringstream page(HelpText::manualPage(L10n{language}));
        int verbs = 0;
        for (std::string line; std::getline(page, line);) {
            EXPECT_FALSE(line.empty()) << name;
            EXPECT_NE(line.front(), '\'') << name << ": " << line;
            const std::string request = line.substr(0, line.find(' '));
            if (line.front() == '.') {
                EXPECT_TRUE(requests.contains(request)) << name << ": " << line;
            }
            if (request == ".SS") ++verbs;
            for (std::size_t at = line.find('\\'); at != std::string::npos; at = line.find('\\', at + 2))
                EXPECT_TRUE(at + 1 < line.size() && escapes.contains(line[at + 1])) << name << ": " << line;
            for (std::size_t at = line.find('-'); at != std::string::npos; at = line.find('-', at + 1))
                EXPECT_TRUE(at > 0 && line[at - 1] == '\\') << name << ": " << line;
        }
        EXPECT_EQ(verbs, std::ranges::count(verbTable(), false, &Verb::isHidden)) << name;
    }
}

}  // namespace
}  // namespace orvane
