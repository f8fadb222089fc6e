#include "OrvaneCore/Support/L10n.h"

#include <gtest/gtest.h>

#include "Support/Table.h"

namespace orvane {

TEST(L10nTest, fillsPlaceholders) {
    EXPECT_EQ(L10n{Language::en}.text("common.cancel"), "Cancel");
    // A key that no table has is its own text, which lets these rows show the format itself.
    const L10n l10n;
    EXPECT_EQ(l10n.text("%d of %@", 9223372036854775807LL, "four"), "9223372036854775807 of four");
    EXPECT_EQ(l10n.text("%2$@ before %1$@", "a", std::string("b")), "b before a");
    EXPECT_EQ(l10n.text("%1$@%1$@ %d", "x"), "xx x");
    EXPECT_EQ(l10n.text("100%% of %d%", -5), "100% of -5%");
    EXPECT_EQ(l10n.text("%d %d %2$@ %9$@ %s %0$@ %1$ %1$x %", 1), "1 %d %2$@ %9$@ %s %0$@ %1$ %1$x %");
    EXPECT_EQ(l10n.text("%@ and %@", "%d", "%1$@"), "%d and %1$@") << "what fills a place is not looked at again";
    EXPECT_EQ(l10n.text("%@", std::string_view("a\0b", 3)), std::string("a\0b", 3));
    EXPECT_EQ(l10n.plural("%d %@", 2, "files"), "2 files.other");
}

TEST(LanguageTest, isChosenByPreferenceThenLocaleAndHasItsPlural) {
    for (const auto& [preference, lcAll, lang, expected] : table<4>(R"(
        ||| en ; || de_AT.UTF-8 | de ; | fr_FR.UTF-8 | de_DE.UTF-8 | fr ; | C | de_DE.UTF-8 | en
        | C.UTF-8 | de_DE.UTF-8 | en ; | nl_NL | de_DE | en ; ja | fr_FR | de_DE | ja ; zhHans | | | zhHans
        klingon || pt_BR.UTF-8 | pt ; || pt-BR | pt ; || zh_TW.Big5 | zhHans ; || zhHans | en ; || es@euro | es
        || frisian | en ; || POSIX | en)")) {
        EXPECT_EQ(rawValue(chooseLanguage(preference, lcAll, lang)), expected) << preference << " " << lcAll << lang;
    }
    // For the counts 0, 1, 2 and -1: o is ".one", x is ".other".
    for (const auto& [language, expected] :
         table<2>("en | xoxx; de | xoxx; es | xoxx; fr | ooxx; pt | ooxx; ja | xoxx; zhHans | xoxx")) {
        std::string forms;
        for (const long long count : {0, 1, 2, -1})
            forms += L10n{*fromRawValue<Language>(language)}.plural("none", count) == "none.one" ? 'o' : 'x';
        EXPECT_EQ(forms, expected) << language;
    }
}

}  // namespace orvane
