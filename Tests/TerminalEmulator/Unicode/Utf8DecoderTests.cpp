#include "TerminalEmulator/Unicode/Utf8Decoder.h"

#include <gtest/gtest.h>
#include <unicode/unistr.h>

#include <random>
#include <string>
#include <vector>

namespace orvane {

namespace {

std::u32string decoded(const std::vector<std::string_view>& pieces) {
    Utf8Decoder decoder;
    std::u32string scalars;
    const auto add = [&](char32_t scalar) { scalars += scalar; };
    for (const std::string_view piece : pieces)
        decoder.decode(piece, add);
    decoder.finish(add);
    EXPECT_FALSE(decoder.isPending());
    return scalars;
}

void expectEverywhereCut(std::string_view input, const std::u32string& expected) {
    SCOPED_TRACE(testing::PrintToString(input));
    EXPECT_EQ(decoded({input}), expected);
    for (std::size_t first = 0; first <= input.size(); ++first) {
        for (std::size_t second = first; second <= input.size(); ++second) {
            ASSERT_EQ(decoded({input.substr(0, first), input.substr(first, second - first), input.substr(second)}),
                      expected)
                << "cut at " << first << " and " << second;
        }
    }
}

}  // namespace

TEST(Utf8DecoderTest, decodesWholeAndCutSequences) {
    const std::vector<std::pair<std::string, std::u32string>> cases = {
        {"", U""},
        {"aé✳😀z", U"aé✳😀z"},
        {"\x7F\xC2\x80\xDF\xBF\xE0\xA0\x80", U"\x7F\u0080\u07FF\u0800"},
        {"\xED\x9F\xBF\xEE\x80\x80\xEF\xBF\xBF\xF0\x90\x80\x80\xF4\x8F\xBF\xBF",
         U"\uD7FF\uE000\uFFFF\U00010000\U0010FFFF"},
        {"\xC0\xAF\xC1\xBF", U"\uFFFD\uFFFD\uFFFD\uFFFD"},  // overlong "/"
        {"\xE0\x9F\xBF\xF0\x8F\xBF\xBF", U"\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD"},
        {"\xED\xA0\x80\xED\xBF\xBF", U"\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD"},  // surrogates
        {"\xF4\x90\x80\x80\xF5\xFF", U"\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD"},  // beyond the last code point
        {"\xE2\x9C", U"\uFFFD"},
        {"\xF0\x9F\x98", U"\uFFFD"},
        {"\xE2\x9C!\xF0\x9F\x98\xE2\x9C\xB3\xC3\xC3\xA9", U"\uFFFD!\uFFFD✳\uFFFDé"},
        // The example of the Unicode Standard, table 3-11.
        {"\xE1\x80\xE2\xF0\x91\x92\xF1\xBF\x41", U"\uFFFD\uFFFD\uFFFD\uFFFDA"}};
    for (const auto& [input, expected] : cases)
        expectEverywhereCut(input, expected);
}

TEST(Utf8DecoderTest, agreesWithIcuOnDamagedText) {
    static const std::vector<std::string> pieces = {"a",    "\x80", "\xBF", "\xC3",     "\xE0", "\xED", "\xEF", "\xF0",
                                                    "\xF4", "\x8F", "\x90", "\xA0\x80", "é",    "✳",    "😀",   "\xFF"};
    std::mt19937 random(11);
    for (int round = 0; round < 20000; ++round) {
        std::string input;
        for (auto count = random() % 10; count > 0; --count)
            input += random() % 8 == 0 ? std::string(1, static_cast<char>(random())) : pieces[random() % pieces.size()];
        const auto expected = icu::UnicodeString::fromUTF8(input);
        const std::u32string actual = decoded({input});
        ASSERT_EQ(icu::UnicodeString::fromUTF32(reinterpret_cast<const UChar32*>(actual.data()),
                                                static_cast<int32_t>(actual.size())),
                  expected)
            << testing::PrintToString(input);
        const std::size_t place = random() % (input.size() + 1);
        const std::string_view view = input;
        ASSERT_EQ(decoded({view.substr(0, place), view.substr(place)}), actual) << testing::PrintToString(input);
    }
}

}  // namespace orvane
