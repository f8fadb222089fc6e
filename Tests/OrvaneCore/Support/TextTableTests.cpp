#include "OrvaneCore/Support/TextTable.h"

#include <fmt/ranges.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <set>

#include "OrvaneCore/Support/Language.h"
#include "OrvaneCore/Support/Regex.h"
#include "OrvaneCore/Support/Text.h"
#include "Support/Table.h"

namespace orvane {
namespace {

using Texts = std::vector<TextEntry>;

std::string_view englishOf(const TextEntry& entry) {
    return entry.texts[static_cast<std::size_t>(Language::en)];
}

/// The placeholders as a sorted list of "<argument><kind>", "1d 2@"; an argument may be used more than once.
std::string placeholders(std::string_view text) {
    static const Regex form = *Regex::compile("%(?:(%)|(?:([1-9])\\$)?([d@])|)");
    std::multiset<std::string> found;
    int next = 1;
    for (const auto& match : form.allMatches(text).found) {
        const auto& position = match.groups[2];
        const auto& kind = match.groups[3];
        if (match.groups[1]) continue;
        if (!kind) return "malformed";
        found.insert((position ? std::string(position->text) : std::to_string(next++)).append(kind->text));
    }
    return fmt::format("{}", fmt::join(found, " "));
}

/// The white space at the ends, "<front>|<back>".
std::string ends(std::string_view text) {
    const std::string_view inner = Text::trimmed(text);
    if (inner.empty()) return std::string(text);
    const auto start = static_cast<std::size_t>(inner.data() - text.data());
    return std::string(text.substr(0, start)) + "|" + std::string(text.substr(start + inner.size()));
}

/// What is wrong with the texts, a line each.
std::vector<std::string> faults(const Texts& texts) {
    std::vector<std::string> result;
    for (const TextEntry& entry : texts) {
        for (const auto& [language, name] : RawValues<Language>::table) {
            const bool runsTextsTogether = language == Language::ja || language == Language::zhHans;
            const std::string_view text = entry.texts[static_cast<std::size_t>(language)];
            const auto report = [&](const std::string& fault) {
                result.push_back(fmt::format("{} {}: {}", name, entry.key, fault));
            };
            if (Text::trimmed(text).empty()) report("is missing");
            const std::string found = placeholders(text);
            if (found.contains("malformed") || found != placeholders(englishOf(entry))) report("has " + found);
            if (!Text::isValidUtf8(text)) report("is no UTF-8");
            // Where sentences stand without a blank between them, a text that is added to another has none either.
            if (ends(text) != (runsTextsTogether ? "|" : ends(englishOf(entry)))) report("has blank ends");
        }
        const bool isPlural = entry.key.ends_with(".one") || entry.key.ends_with(".other");
        const std::string stem(entry.key.substr(0, entry.key.rfind('.')));
        for (const char* form : {".one", ".other"})
            if (isPlural && std::ranges::find(texts, stem + form, &TextEntry::key) == texts.end())
                result.push_back(stem + form + " is missing");
    }
    return result;
}

/// Keys that a source uses and the table lacks. A literal that ends in "." is the front of a key; one without a dot is
/// none, but a text that a function of the same name is given. Behind the key of a plural stand ".one" and ".other".
std::vector<std::string> missingKeys(const std::string& source, const Texts& texts, int& uses) {
    static const Regex use =
        *Regex::compile(R"re((?:\btext\(|\b(plural)\(|\b(?:text|name|title)Key\s*=)\s*"([^"]*\.[^"]*)")re");
    const auto has = [&](const std::string& key) {
        return std::ranges::any_of(texts, [&](const TextEntry& entry) {
            return key.ends_with('.') ? entry.key.starts_with(key) : entry.key == key;
        });
    };
    std::vector<std::string> missing;
    for (const auto& match : use.allMatches(source).found) {
        ++uses;
        const std::string key(match.groups[2]->text);
        const bool isPlural = match.groups[1] && !key.ends_with('.');
        if (isPlural ? !has(key + ".one") || !has(key + ".other") : !has(key)) missing.push_back(key);
    }
    return missing;
}

const Texts allTexts(textTable().begin(), textTable().end());

TEST(TextTableTest, everyTextStandsInEveryLanguageWithTheSamePlaceholders) {
    EXPECT_GT(allTexts.size(), 100U);
    for (const std::string& fault : faults(allTexts))
        ADD_FAILURE() << fault;
}

TEST(TextTableTest, theKeysThatSourcesUseAreThere) {
    int uses = 0;
    for (const char* folder : {"/Sources", "/Resources"}) {
        for (const auto& entry :
             std::filesystem::recursive_directory_iterator(std::string(ORVANE_SOURCE_DIR) + folder)) {
            const std::string extension = entry.path().extension();
            if (extension != ".cpp" && extension != ".h" && extension != ".js" && extension != ".html") continue;
            std::ifstream file(entry.path());
            const std::string source{std::istreambuf_iterator<char>(file), {}};
            for (const std::string& key : missingKeys(source, allTexts, uses))
                ADD_FAILURE() << entry.path().filename() << " uses " << key;
        }
    }
    EXPECT_GT(uses, 80) << "the search no longer finds how sources name keys";
}

TEST(TextTableTest, theChecksSeeFaults) {
    for (const auto& [english, german] : table<2>("%d of %@ | %@ of %d; %1$@ %2$d | %2$@ %1$d; %@ | %1$d; 100%% | 100%;"
                                                  "Done. |; \tDone. | Done.; x | \xFF")) {
        TextEntry entry{.key = "key", .texts = {}};
        entry.texts.fill(english);
        entry.texts[static_cast<std::size_t>(Language::de)] = german;
        EXPECT_NE(fmt::format("{}", fmt::join(faults({entry}), "\n")).find("de key"), std::string::npos) << german;
    }
    const Texts texts = {
        {.key = "a.b", .texts = {}}, {.key = "a.c.one", .texts = {}}, {.key = "a.c.other", .texts = {}}};
    EXPECT_TRUE(std::ranges::count(faults(texts), "en a.b: is missing"));
    for (const auto& [source, fault] : table<2>(R"(
        l10n.text("a.b", 1) | ; l10n.text("a.x") | a.x ; l10n.plural("a.c", 2) | ; plural("a.b", 2) | a.b
        text("a." + name) | ; text("b." + name) | b. ; {.textKey = "a.x"} | a.x ; Uuid::text("0123") |)")) {
        int uses = 0;
        EXPECT_EQ(fmt::format("{}", fmt::join(missingKeys(source, texts, uses), " ")), fault) << source;
    }
}

}  // namespace
}  // namespace orvane
