#include "OrvaneCore/Support/TextTable.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>

#include "OrvaneCore/Support/Language.h"
#include "OrvaneCore/Support/Regex.h"
#include "OrvaneCore/Support/Text.h"

namespace orvane {
namespace {

using Texts = std::vector<TextEntry>;

std::string_view englishOf(const TextEntry& entry) {
    return entry.texts[static_cast<std::size_t>(Language::en)];
}

/// The placeholders as a sorted list of "<argument><kind>", "1d 2@"; an argument may be used more than once.
std::string placeholders(std::string_view text) {
    static const Regex form = *Regex::compile("%(?:(%)|(?:([1-9])\\$)?([d@])|)");
    std::vector<std::string> found;
    int next = 1;
    for (const auto& match : form.allMatches(text).found) {
        const auto& percentSign = match.groups[1];
        const auto& position = match.groups[2];
        const auto& kind = match.groups[3];
        if (percentSign) continue;
        if (!kind) {
            found.emplace_back("malformed");
            continue;
        }
        const std::string argument = position ? std::string(position->text) : std::to_string(next++);
        found.push_back(argument + std::string(kind->text));
    }
    std::ranges::sort(found);
    std::string result;
    for (const std::string& each : found)
        result += each + " ";
    return result;
}

/// The white space at the ends, "<front>|<back>".
std::string ends(std::string_view text) {
    const std::string_view inner = Text::trimmed(text);
    if (inner.empty()) return std::string(text);
    const auto start = static_cast<std::size_t>(inner.data() - text.data());
    return std::string(text.substr(0, start)) + "|" + std::string(text.substr(start + inner.size()));
}

bool runsTextsTogether(Language language) {
    return language == Language::ja || language == Language::zhHans;
}

/// What is wrong with the texts, a line each.
std::vector<std::string> faults(const Texts& texts) {
    std::vector<std::string> result;
    for (const TextEntry& entry : texts) {
        for (const auto& [language, name] : RawValues<Language>::table) {
            const std::string_view text = entry.texts[static_cast<std::size_t>(language)];
            const auto report = [&](const std::string& fault) {
                result.push_back(std::string(name) + " " + std::string(entry.key) + ": " + fault);
            };
            if (Text::trimmed(text).empty()) report("is missing");
            const std::string found = placeholders(text);
            if (found.contains("malformed") || found != placeholders(englishOf(entry))) report("has " + found);
            if (!Text::isValidUtf8(text)) report("is no UTF-8");
            // Where sentences stand without a blank between them, a text that is added to another has none either.
            if (ends(text) != (runsTextsTogether(language) ? "|" : ends(englishOf(entry)))) report("has blank ends");
        }
        for (const auto& [one, other] : {std::pair(".one", ".other"), {".other", ".one"}}) {
            if (!entry.key.ends_with(one)) continue;
            const std::string wanted = std::string(entry.key.substr(0, entry.key.rfind('.'))) + other;
            if (std::ranges::find(texts, wanted, &TextEntry::key) == texts.end())
                result.push_back(wanted + " is missing");
        }
    }
    return result;
}

/// How sources name a key. Behind the key of a plural, ".one" and ".other" follow in the table.
struct KeyUse {
    Regex pattern;
    bool isPlural;
};

const std::vector<KeyUse>& keyUses() {
    static const std::vector<KeyUse> uses = {
        {.pattern = *Regex::compile(R"re(\btext\(\s*"([^"]*)")re"), .isPlural = false},
        {.pattern = *Regex::compile(R"re(\bplural\(\s*"([^"]*)")re"), .isPlural = true},
        {.pattern = *Regex::compile(R"re(\b(?:textKey|nameKey|titleKey)\s*=\s*"([^"]*)")re"), .isPlural = false},
    };
    return uses;
}

/// Keys that a source uses and the table lacks. A literal that ends in "." is the front of a key.
std::vector<std::string> missingKeys(const std::string& source, const Texts& texts, int& uses) {
    const auto has = [&](const std::string& key) {
        return std::ranges::find(texts, key, &TextEntry::key) != texts.end();
    };
    std::vector<std::string> missing;
    for (const auto& [pattern, isPlural] : keyUses()) {
        for (const auto& match : pattern.allMatches(source).found) {
            const std::string key(match.groups[1]->text);
            // A literal without a dot is no key but a text that a function of the same name is given.
            if (!key.contains('.')) continue;
            ++uses;
            bool known = isPlural ? has(key + ".one") && has(key + ".other") : has(key);
            if (key.ends_with('.')) {
                known = std::ranges::any_of(texts, [&](const TextEntry& entry) { return entry.key.starts_with(key); });
            }
            if (!known) missing.push_back(key);
        }
    }
    return missing;
}

Texts table() {
    const auto entries = textTable();
    return {entries.begin(), entries.end()};
}

TextEntry inEveryLanguage(std::string_view key, std::string_view text) {
    TextEntry entry{.key = key, .texts = {}};
    entry.texts.fill(text);
    return entry;
}

TEST(TextTableTest, everyTextStandsInEveryLanguageWithTheSamePlaceholders) {
    EXPECT_GT(table().size(), 100U);
    for (const std::string& fault : faults(table()))
        ADD_FAILURE() << fault;
}

TEST(TextTableTest, theKeysThatSourcesUseAreThere) {
    int uses = 0;
    const Texts texts = table();
    for (const char* folder : {"/Sources", "/Resources"}) {
        for (const auto& entry :
             std::filesystem::recursive_directory_iterator(std::string(ORVANE_SOURCE_DIR) + folder)) {
            const std::string extension = entry.path().extension();
            if (extension != ".cpp" && extension != ".h" && extension != ".js" && extension != ".html") continue;
            std::ifstream file(entry.path());
            const std::string source{std::istreambuf_iterator<char>(file), {}};
            for (const std::string& key : missingKeys(source, texts, uses))
                ADD_FAILURE() << entry.path().filename() << " uses " << key;
        }
    }
    EXPECT_GT(uses, 80) << "the search no longer finds how sources name keys";
}

TEST(TextTableTest, theChecksSeeFaults) {
    const std::pair<std::string_view, std::string_view> differing[] = {
        {"%d of %@", "%@ of %d"}, {"%d of %@", "%d"},       {"%@", "%@ %@"}, {"%1$@ %2$d", "%2$@ %1$d"},
        {"%@", "%1$d"},           {"Done.", "Done. "},      {"Done.", ""},   {" Done.", "Done."},
        {"100%%", "100%"},        {"Done.", "Done.\u00A0"}, {"x", "\xFF"},
    };
    for (const auto& [english, german] : differing) {
        TextEntry entry = inEveryLanguage("key", english);
        entry.texts[static_cast<std::size_t>(Language::ja)] = Text::trimmed(english);
        entry.texts[static_cast<std::size_t>(Language::zhHans)] = Text::trimmed(english);
        EXPECT_EQ(faults({entry}), std::vector<std::string>()) << english;
        entry.texts[static_cast<std::size_t>(Language::de)] = german;
        EXPECT_FALSE(faults({entry}).empty()) << english << " | " << german;
    }
    TextEntry reordered = inEveryLanguage("key", "%d of %@ 100%%");
    reordered.texts[static_cast<std::size_t>(Language::ja)] = "%2$@ %1$d 100%%";
    EXPECT_EQ(faults({reordered}), std::vector<std::string>());
    EXPECT_FALSE(faults({inEveryLanguage("a.one", "x")}).empty());
    EXPECT_FALSE(faults({inEveryLanguage("a.other", "x")}).empty());

    const Texts texts = {inEveryLanguage("a.b", "x"), inEveryLanguage("a.c.one", "x"),
                         inEveryLanguage("a.c.other", "x")};
    const std::pair<const char*, bool> sources[] = {
        {R"(l10n.text("a.b", 1))", true},   {R"(l10n.text("a.x"))", false},  {"text(\n    \"a.x\")", false},
        {R"(l10n.plural("a.c", 2))", true}, {R"(plural("a.b", 2))", false},  {R"(text("a.c"))", false},
        {R"(text("a." + name))", true},     {R"(text("b." + name))", false}, {R"({.textKey = "a.x"})", false},
        {R"({.nameKey = "a.b"})", true},    {R"(Uuid::text("0123"))", true},
    };
    for (const auto& [source, isSound] : sources) {
        int uses = 0;
        EXPECT_EQ(missingKeys(source, texts, uses).empty(), isSound) << source;
    }
}

}  // namespace
}  // namespace orvane
