#include "OrvaneShell/View/Input/KeyText.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "InputText.h"

namespace orvane {
namespace {

using namespace testing;

TEST(KeyTextTests, whatPeopleWriteIsReadAndWrittenInOneWay) {
    const auto rows = table<2>(R"(
        C-b          | C-b;       ctrl+B      | C-b;      C-S-b      | C-S-b;     Control-Alt-x | C-M-x
        M-x          | M-x;       Alt+X       | M-X;      M-S-x      | M-X;       A | A;         S-a | A
        enter        | Enter;     return      | Enter;    S-Enter    | S-Enter;   shift-left | S-Left
        F5           | F5;        f35         | F35;      C-F12      | C-F12;     D-k | D-k
        Space        | Space;     C-space     | C-Space;  -          | -;         C-- | C--
        C-+          | C-+;       +           | +;        ä          | ä;         Ä | Ä
        pgup         | PageUp;    Esc         | Escape;   ?          | ?;         C-\ | C-\
    )");
    for (const auto& [text, written] : rows) {
        const auto pattern = KeyText::parse(text);
        ASSERT_TRUE(pattern.has_value()) << text;
        EXPECT_EQ(KeyText::write(*pattern), written) << text;
        EXPECT_EQ(KeyText::parse(written), *pattern) << text;
    }
}

TEST(KeyTextTests, whatIsNoKeyIsNamed) {
    const std::pair<std::string, std::string> rows[] = {
        {"", ""},       {"C-", "C-"}, {"C-foo", "foo"}, {"Q-x", "Q-x"},   {"F36", "F36"}, {"F0", "F0"},
        {"F05", "F05"}, {"ab", "ab"}, {"\x03", "\x03"}, {"\xff", "\xff"}, {"F1x", "F1x"}, {"C-M-", "M-"},
    };
    for (const auto& [text, part] : rows) {
        const auto pattern = KeyText::parse(text);
        ASSERT_FALSE(pattern.has_value()) << text;
        EXPECT_EQ(pattern.error(), part) << text;
    }
}

TEST(KeyTextTests, aKeyIsFoundInWhateverFormItCame) {
    const auto rows = lineTable<3>(R"(
        # the key | what is it | what is not
        C-b     | \x02 \e[98;5u \e[27;5;98~ \e[98;69u \e[98;5:2u \e[1080::98;5u | b \e\x02 \e[98;6u \e[98;5:3u \e[98;13u
        C-S-b   | \e[98;6u \e[98:66;6u \e[27;6;66~ | \x02 \e[98;5u
        M-x     | \ex \e[120;3u \e[120;33u | x \eX \e[120;7u
        A       | A \e[97;2u \e[97:65;2u   | a \eA \e[97u
        !       | ! \e[49:33;2u            | 1 \e[49;2u \e[49u
        C-!     | \e[27;6;33~ \e[49:33;6u  | \e[49;5u
        Enter   | \r \eOM \e[57414u        | \e\r \e[13;2u
        S-Enter | \e[13;2u \e[27;2;13~     | \r
        5       | 5 \eOu \e[57404u         | \e[E
        S-Left  | \e[1;2D \e[d             | \e[D \e[1;6D
        F13     | \e[25~ \e[57376u         | \e[1;2P
    )");
    const auto words = [](std::string text) {
        std::ranges::replace(text, ' ', '\n');
        return lineTable<1>(text);
    };
    const auto single = [](const std::string& typed) {
        const auto events = decodedInput({bytesOf(typed)});
        return std::get<KeyEvent>(events.at(0));
    };
    for (const auto& [text, same, others] : rows) {
        const KeyPattern pattern = KeyText::parse(text).value();
        for (const auto& [typed] : words(same))
            EXPECT_TRUE(pattern.matches(single(typed))) << text << " as " << typed;
        for (const auto& [typed] : words(others))
            EXPECT_FALSE(pattern.matches(single(typed))) << text << " as " << typed;
    }
}

}  // namespace
}  // namespace orvane
