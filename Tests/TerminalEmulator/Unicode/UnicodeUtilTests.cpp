#include "TerminalEmulator/Unicode/UnicodeUtil.h"

#include <fmt/format.h>
#include <gtest/gtest.h>
#include <unicode/uchar.h>
#include <unicode/uversion.h>

#include <string>
#include <vector>

namespace orvane {

namespace {

using namespace std::string_literals;

/// ICU's Unicode may be newer than the table's; what only one of them knows is not compared.
bool isKnownToBoth(UChar32 scalar) {
    UVersionInfo age;
    u_charAge(scalar, age);
    return age[0] <= 15;
}

std::string nameOf(UChar32 scalar) {
    return fmt::format("U+{:04X}", static_cast<std::uint32_t>(scalar));
}

bool isInvisible(UChar32 scalar) {
    const bool isUnseenFormat = u_charType(scalar) == U_FORMAT_CHAR && scalar != 0xAD &&
                                !u_hasBinaryProperty(scalar, UCHAR_PREPENDED_CONCATENATION_MARK);
    const int syllable = u_getIntPropertyValue(scalar, UCHAR_HANGUL_SYLLABLE_TYPE);
    const bool isReserved = u_charType(scalar) == U_UNASSIGNED;
    return (U_GET_GC_MASK(scalar) & (U_GC_MN_MASK | U_GC_ME_MASK | U_GC_ZL_MASK | U_GC_ZP_MASK)) != 0 ||
           isUnseenFormat || syllable == U_HST_VOWEL_JAMO || syllable == U_HST_TRAILING_JAMO ||
           (isReserved && u_hasBinaryProperty(scalar, UCHAR_DEFAULT_IGNORABLE_CODE_POINT));
}

int expectedWidth(UChar32 scalar) {
    if (u_charType(scalar) == U_CONTROL_CHAR || isInvisible(scalar)) return 0;
    const int eastAsianWidth = u_getIntPropertyValue(scalar, UCHAR_EAST_ASIAN_WIDTH);
    const bool isWide = eastAsianWidth == U_EA_WIDE || eastAsianWidth == U_EA_FULLWIDTH ||
                        u_hasBinaryProperty(scalar, UCHAR_EMOJI_PRESENTATION);
    return isWide ? 2 : 1;
}

bool expectedToJoin(UChar32 scalar) {
    return isInvisible(scalar) || u_getCombiningClass(scalar) != 0 ||
           u_hasBinaryProperty(scalar, UCHAR_EMOJI_MODIFIER) || u_hasBinaryProperty(scalar, UCHAR_VARIATION_SELECTOR);
}

}  // namespace

TEST(UnicodeUtilTest, knowsTheWidthsThatPeopleSee) {
    const std::vector<std::pair<int, std::u32string>> rows = {
        {0, U"\a\x7F\u0085\u0301\u20DD\u200B\u200D\u2060\uFEFF\uFE0F\u1160\u11A8\uD7B0\U000E0061\U000E0100\u2028"},
        {1, U" a\u00A0\u00ADé§°─█→✳❤©ﾊ\u0600\u093E\uE000\U000F0000\uFFFD\u0378🄰"},
        {2, U"漢カ가Ａ\u1100\u115F\u3000✅⌚😀👍🏽🇩🈚\u3400\U0002A6FE\U0003FFFD\uFAFF"}};
    for (const auto& [width, scalars] : rows) {
        for (const char32_t scalar : scalars) {
            EXPECT_EQ(UnicodeUtil::columnWidth(scalar), width) << nameOf(static_cast<UChar32>(scalar));
        }
    }
}

TEST(UnicodeUtilTest, agreesWithIcuOnEveryCodePoint) {
    for (UChar32 scalar = 0; scalar <= 0x10FFFF; ++scalar) {
        if (U_IS_SURROGATE(scalar) || !isKnownToBoth(scalar)) continue;
        const auto codePoint = static_cast<char32_t>(scalar);
        ASSERT_EQ(UnicodeUtil::columnWidth(codePoint), expectedWidth(scalar)) << nameOf(scalar);
        ASSERT_EQ(UnicodeUtil::joinsPrevious(codePoint), expectedToJoin(scalar)) << nameOf(scalar);
        ASSERT_EQ(UnicodeUtil::isEmojiModifierBase(codePoint), u_hasBinaryProperty(scalar, UCHAR_EMOJI_MODIFIER_BASE))
            << nameOf(scalar);
        ASSERT_EQ(UnicodeUtil::isEmojiModifier(codePoint), u_hasBinaryProperty(scalar, UCHAR_EMOJI_MODIFIER))
            << nameOf(scalar);
        ASSERT_EQ(UnicodeUtil::isExtendedPictographic(codePoint),
                  u_hasBinaryProperty(scalar, UCHAR_EXTENDED_PICTOGRAPHIC))
            << nameOf(scalar);
        ASSERT_EQ(UnicodeUtil::isRegionalIndicator(codePoint), u_hasBinaryProperty(scalar, UCHAR_REGIONAL_INDICATOR))
            << nameOf(scalar);
        ASSERT_EQ(UnicodeUtil::isControl(codePoint), u_charType(scalar) == U_CONTROL_CHAR) << nameOf(scalar);
    }
}

TEST(UnicodeUtilTest, variationSelectorsWorkWhereUnicodeListsThem) {
    for (const char32_t base : U"#*09©®‼⌚☀☺❤✳🅰🈚🌍👍"s)
        EXPECT_TRUE(UnicodeUtil::isVariationBase(base)) << nameOf(static_cast<UChar32>(base));
    for (const char32_t base : U"a é漢─🏽🇩🥰\uFE0F"s)
        EXPECT_FALSE(UnicodeUtil::isVariationBase(base)) << nameOf(static_cast<UChar32>(base));
    for (char32_t scalar = 0; scalar <= 0x10FFFF; ++scalar) {
        if (!UnicodeUtil::isVariationBase(scalar)) continue;
        EXPECT_TRUE(u_hasBinaryProperty(static_cast<UChar32>(scalar), UCHAR_EMOJI))
            << nameOf(static_cast<UChar32>(scalar));
    }
}

}  // namespace orvane
