#include "OrvaneCore/Support/L10n.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace orvane {

TEST(L10nTest, fillsPlaceholders) {
    EXPECT_EQ(L10n{Language::en}.text("common.cancel"), "Cancel");
    // A key that no table has is its own text, which lets these rows show the format itself.
    const L10n l10n;
    const std::vector<std::pair<std::string, std::string>> cases = {
        {l10n.text("%d of %@", 3, "four"), "3 of four"},
        {l10n.text("%2$@ before %1$@", "a", std::string("b")), "b before a"},
        {l10n.text("%1$@%1$@ %d", "x"), "xx x"},
        {l10n.text("100%% of %d%", -5), "100% of -5%"},
        {l10n.text("%d %d %2$@ %9$@", 1), "1 %d %2$@ %9$@"},
        {l10n.text("%s %0$@ %1$ %1$x %", 1), "%s %0$@ %1$ %1$x %"},
        {l10n.text("%@ and %@", "%d", "%1$@"), "%d and %1$@"},  // what fills a place is not looked at again
        {l10n.text("%@", std::string_view("a\0b", 3)), std::string("a\0b", 3)},
        {l10n.text("%d", 9223372036854775807LL), "9223372036854775807"},
        {l10n.text("plain", 1, 2), "plain"},
        {l10n.text(""), ""}};
    for (const auto& [text, expected] : cases)
        EXPECT_EQ(text, expected);
}

TEST(L10nTest, choosesThePluralOfTheLanguage) {
    // For the counts 0, 1, 2 and -1: o is ".one", x is ".other".
    const std::vector<std::pair<Language, std::string>> cases = {
        {Language::en, "xoxx"}, {Language::de, "xoxx"}, {Language::es, "xoxx"},    {Language::fr, "ooxx"},
        {Language::pt, "ooxx"}, {Language::ja, "xoxx"}, {Language::zhHans, "xoxx"}};
    for (const auto& [language, expected] : cases) {
        std::string forms;
        for (const long long count : {0, 1, 2, -1}) {
            forms += L10n{language}.plural("no.such.key", count) == "no.such.key.one" ? 'o' : 'x';
        }
        EXPECT_EQ(forms, expected) << rawValue(language);
    }
    EXPECT_EQ(L10n().plural("%d %@", 2, "files"), "2 files.other");
}

TEST(LanguageTest, choosesByPreferenceThenLocale) {
    struct Case {
        std::string preference;
        std::string lcAll;
        std::string lang;
        Language expected;
    };
    const std::vector<Case> cases = {{"", "", "", Language::en},
                                     {"", "", "de_AT.UTF-8", Language::de},
                                     {"", "fr_FR.UTF-8", "de_DE.UTF-8", Language::fr},
                                     {"", "C", "de_DE.UTF-8", Language::en},
                                     {"", "C.UTF-8", "de_DE.UTF-8", Language::en},
                                     {"", "nl_NL", "de_DE", Language::en},
                                     {"ja", "fr_FR", "de_DE", Language::ja},
                                     {"zhHans", "", "", Language::zhHans},
                                     {"klingon", "", "pt_BR.UTF-8", Language::pt},
                                     {"", "", "pt-BR", Language::pt},
                                     {"", "", "zh_TW.Big5", Language::zhHans},
                                     {"", "", "zhHans", Language::en},
                                     {"", "", "es@euro", Language::es},
                                     {"", "", "frisian", Language::en},
                                     {"", "", "POSIX", Language::en}};
    for (const auto& [preference, lcAll, lang, expected] : cases) {
        EXPECT_EQ(rawValue(chooseLanguage(preference, lcAll, lang)), rawValue(expected))
            << "'" << preference << "' '" << lcAll << "' '" << lang << "'";
    }
}

}  // namespace orvane
