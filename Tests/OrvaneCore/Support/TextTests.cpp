#include "OrvaneCore/Support/Text.h"

#include <gtest/gtest.h>
#include <unicode/normalizer2.h>
#include <unicode/uchar.h>
#include <unicode/unistr.h>

#include <random>

#include "Support/Table.h"
#include "Support/TextPromises.h"

namespace orvane {
namespace {

const std::string family = "👨‍👩‍👧";  // three people and two joiners
const std::string accented = "e\u0301";           // e and a combining acute accent

std::string utf8(const icu::UnicodeString& text) {
    std::string result;
    text.toUTF8String(result);
    return result;
}

/// Bytes that hold much of what goes wrong: cut, overlong and surrogate sequences between sound ones.
std::string hostileText(std::mt19937& random) {
    static const std::vector<std::string> pieces = {
        "a",    "\r",   "\n",     "\x80",   "\xC3",     "\xE2\x82", "\xF0\x9F\x91", "\xED\xA0\x80", "\xC0\xAF",
        "\xFF", "\xCC", "\u0301", "가",     "\u1100",   "\u1161",   "\u11A8",       "👨",           "\u200D",
        "🇩",    "🇪",    "\u0600", "\uFE0F", "\xF4\x90", "é",        "\u0B47",       "\u0B3E",       "Ａ"};
    std::string text;
    for (auto count = random() % 12; count > 0; --count)
        text += pieces[random() % pieces.size()];
    return text;
}

}  // namespace

TEST(TextTest, countsCutsAndTruncatesCharacters) {
    const std::vector<std::vector<std::string>> cases = {
        {},
        {"a", "b", "c"},
        {"a", "\r\n", "b", "\n", "\r"},
        {accented, "x", accented},
        {"a", family, "🇩🇪", "🇫🇷", "b"},
        {"\u06001", "o", "k"},  // an Arabic number sign goes before its digit
        {"한", "국"},
        {"x", "\xE2\x82", "z", "\xFF", "\xFF"}};
    for (const auto& characters : cases) {
        SCOPED_TRACE(testing::PrintToString(characters));
        std::string text;
        for (const std::string& character : characters)
            text += character;
        EXPECT_EQ(Text::characterCount(text), characters.size());
        std::string before;
        for (std::size_t count = 0; count <= characters.size() + 1; ++count) {
            EXPECT_EQ(Text::prefix(text, count), before) << count;
            const std::size_t left = characters.size() - std::min(count, characters.size());
            EXPECT_EQ(Text::suffix(text, left), text.substr(before.size())) << left;
            if (count < characters.size()) before += characters[count];
        }
    }
    std::string manyFlags = "x";
    for (int flag = 0; flag < 1000; ++flag)
        manyFlags += "🇩🇪";
    for (const std::size_t count : {256, 257, 1000})
        EXPECT_EQ(Text::suffix(manyFlags, count).size(), count * 8) << count;

    for (const auto& [text, count, ellipsis, expected] : table<4>(R"(
        abcdef | 6 | … | abcdef ; abcdef | 5 | … | abcd… ; abcdef | 5 | ... | ab... ; abcdef | 2 | ... | ..
        abcdef | 1 | … | … ; abcdef | 0 | … | ; | 0 | … | ; ab | 1 | | a
        x👨‍👩‍👧👨‍👩‍👧 | 3 | … | x👨‍👩‍👧👨‍👩‍👧 ; 👨‍👩‍👧ab | 2 | … | 👨‍👩‍👧…)"))
        EXPECT_EQ(Text::truncated(text, std::stoul(count), ellipsis), expected) << text << " to " << count;
}

TEST(TextTest, measuresTheColumnsOfATerminal) {
    // A letter of conjoining parts, selectors behind an emoji and behind none, joiners, and malformed bytes among them.
    auto cases = table<2>(
        "|0; plain|5; 日本語|6; 한국|4; Ａ１|4; ｶﾅ|2; 👨‍👩‍👧|2; 👍🏽|2; 🇩🇪🇫🇷|4; "
        "🇩x|2; "
        "☀|1; "
        "…—“”|4;"
        "\u1112\u1161\u11AB|2; e\u0301x|2; \u0301|0; ☀\uFE0F|2; 1\uFE0F\u20E3|2; a\u200Bb\u2060|2;"
        "x\xE2\x82z\xFF|4; x\uFE0F\xC3\uFE0F|2");
    cases.push_back({"\x1B[31m\r\n\t\x7F\u0085", "4"});  // the printable part of an escape sequence
    for (const auto& [text, width] : cases)
        EXPECT_EQ(Text::displayWidth(text), std::stoul(width)) << testing::PrintToString(text);
}

TEST(TextTest, foldsEveryCodePointAsIcuDoes) {
    UErrorCode status = U_ZERO_ERROR;
    const icu::Normalizer2& canonical = *icu::Normalizer2::getNFDInstance(status);
    const icu::Normalizer2& compatible = *icu::Normalizer2::getNFKCInstance(status);
    const icu::Normalizer2& composed = *icu::Normalizer2::getNFCInstance(status);
    ASSERT_TRUE(U_SUCCESS(status));
    int differences = 0;
    for (UChar32 codePoint = 0; codePoint < 0x110000 && differences < 10; ++codePoint) {
        if (U_IS_SURROGATE(codePoint)) continue;
        const icu::UnicodeString original(codePoint);
        icu::UnicodeString expected = original;
        const int type = u_getIntPropertyValue(codePoint, UCHAR_DECOMPOSITION_TYPE);
        if (type == U_DT_WIDE || type == U_DT_NARROW) compatible.getRawDecomposition(codePoint, expected);
        for (int round = 0; round < 3; ++round) {
            icu::UnicodeString bases;
            const icu::UnicodeString parts = canonical.normalize(expected, status);
            for (int32_t index = 0; index < parts.length(); index = parts.moveIndex32(index, 1)) {
                if (u_charType(parts.char32At(index)) != U_NON_SPACING_MARK) bases.append(parts.char32At(index));
            }
            expected = bases.foldCase();
        }
        if (u_getIntPropertyValue(codePoint, UCHAR_HANGUL_SYLLABLE_TYPE) != U_HST_NOT_APPLICABLE) {
            expected = composed.normalize(expected, status);
        }
        if (Text::folded(utf8(original)) == utf8(expected)) continue;
        ++differences;
        ADD_FAILURE() << "U+" << std::hex << codePoint << " folds to " << Text::folded(utf8(original)) << ", not "
                      << utf8(expected);
    }
}

TEST(TextTest, foldsWhatPeopleTakeForTheSame) {
    // Single code points are above; here is what they do together.
    for (const auto& [text, expected] :
         table<2>("Éclair E\u0301COLE | eclair ecole; İstanbul ΣΊΣΥΦΟΣ | istanbul σισυφοσ; がか ガ | かか カ;"
                  "ｶﾞｷﾞｸ | カキク; ❤\uFE0F | ❤; \u1112\u1161\u11AB\u1100\u116E\u11A8 | 한국;"
                  "K\xFFZ\xE2\x82 | k\uFFFDz\uFFFD; \u1161\u11A8 가\u11A7 각\u11A8 | \u1161\u11A8 가\u11A7 각\u11A8"))
        EXPECT_EQ(Text::folded(text), expected) << text;
    EXPECT_TRUE(Text::containsFolded("Das CAFÉ an der Straße", Text::folded("cafe\u0301")));
    EXPECT_TRUE(Text::containsFolded("anything", ""));
    EXPECT_FALSE(Text::containsFolded("한국", Text::folded("하")));
}

TEST(TextTest, foldsBothNormalFormsOfATextEqual) {
    UErrorCode status = U_ZERO_ERROR;
    const icu::Normalizer2& decomposing = *icu::Normalizer2::getNFDInstance(status);
    const icu::Normalizer2& composing = *icu::Normalizer2::getNFCInstance(status);
    std::mt19937 random(20261121);
    const std::vector<UChar32> starts = {0x41,   0xC0,   0x300,  0x370,  0x5D0,  0x900,  0xB40,  0x1100,  0x1161,
                                         0x11A8, 0x1E00, 0x1F00, 0x3040, 0x3099, 0xAC00, 0xFF60, 0x1D158, 0x1D165};
    for (int round = 0; round < 20000; ++round) {
        icu::UnicodeString text;
        for (int length = 0; length < 6; ++length) {
            text.append(static_cast<UChar32>(starts[random() % starts.size()] + random() % 48));
        }
        const std::string composed = utf8(composing.normalize(text, status));
        ASSERT_EQ(Text::folded(composed), Text::folded(utf8(decomposing.normalize(text, status)))) << composed;
        ASSERT_EQ(Text::folded(Text::folded(composed)), Text::folded(composed)) << composed;
    }
}

TEST(TextTest, comparesNamesWithoutCase) {
    for (const auto& [a, b, equal] :
         table<3>("||yes; Main|mAIN|yes; main|mains|no; [|{|no; @|`|no; Straße|STRASSE|yes; É|é|yes; É|e|no; ΑΣ|ας|yes;"
                  "Ａ|ａ|yes; Ａ|a|no; a\xFF|A\xFF|yes; a\xFF|a\xFE|no")) {
        EXPECT_EQ(Text::equalsIgnoringCase(a, b), equal == "yes") << a << " and " << b;
        EXPECT_EQ(Text::caseFolded(a) == Text::caseFolded(b), equal == "yes") << a << " and " << b;
    }
}

TEST(TextTest, trimsAndFlattens) {
    using namespace std::string_literals;
    const std::array<std::string, 3> cases[] = {
        {" \t\r\n ", "", ""},
        {"\u3000 a\u00A0b \u2028", "a\u00A0b", "a b"},
        {"a \n\t b", "a \n\t b", "a b"},
        {"\x1B[31mred\x1B[0m\x07", "\x1B[31mred\x1B[0m\x07", "[31mred [0m"},
        {"a\0b\x7Fz\u0085"s, "a\0b\x7Fz"s, "a b z"},
        {"\uFEFF\u202Eevil\u202C \u200E \u2066x\u2069", "\uFEFF\u202Eevil\u202C \u200E \u2066x\u2069", "evil x"},
        {"pass\u200Bword\u2060s", "pass\u200Bword\u2060s", "passwords"},
        {family + " می\u200Cخواهم", family + " می\u200Cخواهم", family + " می\u200Cخواهم"},
        {" \xE2\x82 x\xFF ", "\xE2\x82 x\xFF", "\uFFFD x\uFFFD"}};
    for (const auto& [text, trimmed, oneLine] : cases) {
        EXPECT_EQ(Text::trimmed(text), trimmed) << testing::PrintToString(text);
        EXPECT_EQ(Text::oneLine(text), oneLine) << testing::PrintToString(text);
    }
}

TEST(TextTest, replacesMalformedRuns) {
    // The examples of the Unicode Standard, tables 3-8 to 3-11, and the edges around them; here '?' is a replacement.
    for (const auto& [text, expected] :
         table<2>("\xC0\xAF\xE0\x80\xBF\xF0\x81\x82Z | ????????Z; \xED\xA0\x80\xED\xBF\xBF\xED\xAFZ | ????????Z;"
                  "\xF4\x91\x92\x93\xFFZ\x80\xBFZ | ?????Z??Z; \xE1\x80\xE2\xF0\x91\x92\xF1\xBFZ | ????Z;"
                  "longer than a word\xF0\x9F\x91 | longer than a word?; longer text é€👨 | longer text é€👨")) {
        std::string shown = Text::sanitizedUtf8(text);
        for (std::size_t at = 0; (at = shown.find("\uFFFD")) != std::string::npos;)
            shown.replace(at, 3, "?");
        EXPECT_EQ(shown, expected) << testing::PrintToString(text);
        EXPECT_EQ(Text::isValidUtf8(text), text == expected) << testing::PrintToString(text);
    }
}

TEST(TextTest, keepsItsPromisesForMalformedText) {
    std::mt19937 random(7);
    for (int round = 0; round < 20000 && !testing::Test::HasFailure(); ++round) {
        const std::string text = hostileText(random);
        const std::size_t cut = random() % (Text::characterCount(text) + 2);
        checkText(text, cut, [&](bool holds, const char* promise) {
            EXPECT_TRUE(holds) << promise << ": " << testing::PrintToString(text) << " at " << cut;
        });
    }
}

}  // namespace orvane
