#include "TerminalEmulator/Parser/EscapeSequenceParser.h"

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <numeric>
#include <random>
#include <string>
#include <vector>

#include "TerminalEmulator/Parser/ParserLog.h"

namespace orvane {

namespace {

using namespace std::string_literals;
using Events = std::vector<std::string>;

struct Case {
    std::string input;
    Events events;
};

void expectEvents(const std::vector<Case>& cases) {
    for (const auto& [input, events] : cases) {
        SCOPED_TRACE(testing::PrintToString(input));
        const ParserLog log({input});
        EXPECT_EQ(log.events, events);
        EXPECT_EQ(log.brokenPromises, Events());
    }
}

std::string repeated(std::string_view text, std::size_t count) {
    std::string result;
    for (; count > 0; --count)
        result += text;
    return result;
}

/// Bytes that meet every state: half of them controls and the characters that sequences are made of.
std::string hostileInput(std::mt19937& random, std::size_t length) {
    static const std::vector<std::string> pieces = {
        "\x1B[", "\x1B]",  "\x1BP", "\x1B_",  "\x1BX",    "\x1B^",    "\x1B\\", "\x1B",  "\x07", "\x18",
        "\x1A",  "\x9C",   "\x9B",  "\x90",   "\x9D",     "\x9F",     "\x98",   "\x84",  "\x7F", ";",
        ":",     "?",      "1",     "23",     "m",        "q",        "$",      "0;t",   "G",    " ",
        "\r\n",  "\x1B[1", "8;;u",  "\x1BPq", "\u2733ab", "\xC2\x9C", "é",      "plain", "\x80", "\xE2"};
    std::string input;
    while (input.size() < length) {
        if (random() % 4 == 0) {
            input += static_cast<char>(random() % 256);
        } else {
            input += pieces[random() % pieces.size()];
        }
    }
    return input;
}

std::vector<std::string_view> cutAt(std::string_view input, const std::vector<std::size_t>& places) {
    std::vector<std::string_view> pieces;
    std::size_t before = 0;
    for (const std::size_t place : places) {
        pieces.push_back(input.substr(before, place - before));
        before = place;
    }
    pieces.push_back(input.substr(before));
    return pieces;
}

std::vector<std::size_t> randomPlaces(std::mt19937& random, std::size_t size) {
    std::vector<std::size_t> places;
    for (std::size_t place = 0; place < size; place += random() % 40)
        places.push_back(place);
    return places;
}

std::vector<std::size_t> everyPlace(std::size_t size) {
    std::vector<std::size_t> places(size);
    std::iota(places.begin(), places.end(), 0);
    return places;
}

std::string recording(const std::string& name) {
    std::ifstream file(ORVANE_SOURCE_DIR "/Tests/Recordings/" + name, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

}  // namespace

TEST(EscapeSequenceParserTest, takesTextInRunsBetweenControls) {
    expectEvents(
        {{"plain text", {"print:plain text"}},
         {"a\r\nb\tc", {"print:a", "execute:0D", "execute:0A", "print:b", "execute:09", "print:c"}},
         {"\x18\x1A\0"s, {"execute:18", "execute:1A", "execute:00"}},
         // In text all from 0x20 on is text: C1 controls in 8 bits are parts of characters.
         {"e\u0301 \u2733 \x9B\x31m \x7F\xFF", {"print:e\u0301 \u2733 \x9B\x31m \x7F\xFF"}},
         {"a\x1B[mb\x1B[m\x1B[m", {"print:a", "reset", "csi [0]m", "print:b", "reset", "csi [0]m", "csi [0]m"}}});
}

TEST(EscapeSequenceParserTest, readsControlSequences) {
    expectEvents({
        {"\x1B[H\x1B[;5H\x1B[5;H", {"csi [0]H", "csi [0;5]H", "csi [5;0]H"}},
        {"\x1B[1:2m\x1B[38:2::1:2:3;4m", {"csi [1:2]m", "csi [38:2:0:1:2:3;4]m"}},
        {"\x1B[?1049h\x1B[>4m\x1B[<1u\x1B[=5;1u\x1B[>0q",
         {"csi ?[1049]h", "csi >[4]m", "csi <[1]u", "csi =[5;1]u", "csi >[0]q"}},
        {"\x1B[2 q\x1B[!p\x1B[?2026$p\x1B[ !p", {"csi  [2]q", "csi ![0]p", "csi ?$[2026]p", "csi many [0]p"}},
        // Controls in the middle act at once, and DEL is nothing.
        {"\x1B[1\n\x7F;2\rH", {"execute:0A", "execute:0D", "csi [1;2]H"}},
        {"\x1B[1\x18mx", {"execute:18", "print:mx"}},
        {"\x1B[1\x1B[2mx", {"csi [2]m", "print:x"}},
        // A marker behind a number, a number behind an intermediate: ignored to the final byte.
        {"\x1B[1?2hx\x1B[1$2\xC3\xA9px", {"print:x", "reset", "print:x"}},
        // A colon before any number is no sequence: the rest is text.
        {"\x1B[:mx", {"error 3A in 3 [0]", "print:mx"}},
        {"\x1B[?:mx", {"csi ?[0:0]m", "print:x"}},
        {"\x1B[1;\xC3mx", {"error C3 in 4 [1;0]", "print:mx"}},
        {"\x1B[1\x84\x1B(\x85z", {"execute:84", "execute:85", "print:z"}},
        {"\x1B\x9B\x31mx", {"csi [1]m", "print:x"}},
    });
}

TEST(EscapeSequenceParserTest, boundsNumbers) {
    expectEvents({{"\x1B[2147483647;2147483648;99999999999999999X", {"csi [2147483647;2147483647;2147483647]X"}},
                  {"\x1B[922337203685477570;922337203685477571X", {"csi [2147483647;0]X"}},
                  {"\x1B[99999999999999999999;12345678901234567890;7X", {"csi [0;0;7]X"}},
                  {"\x1B[" + repeated("9", 1000) + ";0000000000000000000000012X", {"csi [0;12]X"}},
                  {"\x1B]922337203685477571;a\a\x1B]99999999999;b\a", {"osc 0:a BEL", "osc 2147483647:b BEL"}}});
}

TEST(EscapeSequenceParserTest, readsEscapeSequences) {
    expectEvents({{"\x1B"
                   "7\x1B(B\x1B#8\x1B%G\x1B $Z",
                   {"esc 7", "esc (B", "esc #8", "esc %G", "esc  $Z"}},
                  {"\x1B\x1B\x7F\n=x", {"execute:0A", "esc =", "print:x"}},
                  {"\x1B(\x1A"
                   "Bx",
                   {"execute:1A", "print:Bx"}},
                  {"\x1B\xC3\xA9x", {"error C3 in 1 [0]", "print:\xA9x"}}});
}

TEST(EscapeSequenceParserTest, readsStrings) {
    expectEvents({
        {"\x1B]0;title\ax", {"osc 0:title BEL", "print:x"}},
        // The backslash of the terminator is an escape sequence of its own, which does nothing.
        {"\x1B]8;;http://a\x1B\\x", {"osc 8:;http://a ST", "esc \\", "print:x"}},
        {"\x1B]2;a\x1B[1mx", {"osc 2:a ST", "csi [1]m", "print:x"}},
        {"\x1B]104\a\x1B];a\a\x1B]1x;b\a\x1B]\a\x1B]\x1B\\", {"osc 104: BEL", "osc 0:a BEL", "osc 1:b BEL", "esc \\"}},
        {"\x1B]0;lost\x18x\x1B]0;kept\x1Astill\a", {"print:x", "reset", "osc 0:keptstill BEL"}},
        // In the middle of a string 0x9C is a part of a character; where no text has come yet it ends the string.
        {"\x1B]0;\u2733 a\x9C\xC2\x9D b\a", {"osc 0:\u2733 a\x9C\xC2\x9D b BEL"}},
        {"\x1B]\x9Cx\x1B]\n\x9Cx\x1B]\n\u2733\x9C;\a", {"print:x", "reset", "print:x", "reset", "osc 0: BEL"}},
        {"\x1B]0;a\nb\x7F\tc\a",
         {"osc 0:ab\x7F"
          "c BEL"}},
        {"\x1B_Gi=1;AAA\x1B\\\x1B_x\u2733\a\x1B_\a\x1B_Gno\x18", {"apc G:i=1;AAA ST", "esc \\", "apc x:\u2733 BEL"}},
        // SOS and PM are swallowed whole, whatever characters they hold.
        {"\x1BX a\u2733\x9C\n\ab\x1B\\x\x1B^ \xC2\x9C\x80\xFF\x1B\\y",
         {"esc \\", "print:x", "reset", "esc \\", "print:y"}},
        {"\x1BXabc\x18x", {"execute:18", "print:x"}},
    });
}

TEST(EscapeSequenceParserTest, readsDeviceControlStrings) {
    expectEvents({
        {"\x1BP$qm\x1B\\x", {"hook $[0]q", "put:m", "unhook", "esc \\", "print:x"}},
        {"\x1BP1;2q#0\n\x7F!\xFF\x9Cx", {"hook [1;2]q", "put:#0\n!\xFF", "unhook", "print:x"}},
        {"\x1BP+pdata\n\u00E9\x1B\\x", {"esc \\", "print:x"}},
        {"\x1BP1:2qdata\x1B\\\x1BP1?qdata\x1B\\x", {"esc \\", "esc \\", "print:x"}},
        {"\x1BPqab\x18x\x1BPpab\x1B\\", {"hook [0]q", "put:ab", "execute:18", "print:x", "reset", "esc \\"}},
        {"\x1BPqab\x9B\x31mx", {"hook [0]q", "put:ab", "csi [1]m", "print:x"}},
    });
}

TEST(EscapeSequenceParserTest, anErrorHandlerMayLeaveTheRestUnread) {
    ParserLog log;
    log.abortsOnErrors = true;
    log.parser.parse("ab\x1B[:cd");
    EXPECT_EQ(log.events, Events({"print:ab", "reset", "error 3A in 3 [0]"}));
    EXPECT_EQ(log.lastErrorPosition, 4U);
    log.parser.parse("4mx");
    EXPECT_EQ(log.events, Events({"print:ab", "reset", "error 3A in 3 [0]", "csi [4]m", "print:x"}));
}

TEST(EscapeSequenceParserTest, aHandlerMayResetTheParser) {
    ParserLog log;
    log.resetsParser = true;
    log.parser.parse(
        "\x1B[1;2mx\x1B"
        "cy\x1B]0;title\x1B\\\x1B_Gdata\x1B\\z\x1BPqa");
    EXPECT_EQ(log.events, Events({"csi [1;2]m", "print:x", "reset", "esc c", "print:y", "reset", "osc 0:title ST",
                                  "esc \\", "apc G:data ST", "esc \\", "print:z", "reset", "hook [0]q", "put:a"}));
    log.parser.parse("b\x1B[5");
    EXPECT_EQ(log.events.back(), "reset");
    log.parser.reset();
    log.parser.parse("c");
    EXPECT_EQ(log.events.back(), "print:c");
}

TEST(EscapeSequenceParserTest, keepsBoundedPartsOfEndlessSequences) {
    constexpr std::size_t limit = EscapeSequenceParser::stringLimit;
    const std::string tooMuch(3 * limit, 'x');
    for (const std::string end : {"\a", "\x1B\\"}) {
        ParserLog log(
            {"\x1B]2;", tooMuch, tooMuch, end, "\x1B_G", tooMuch, end, "\x1BPq", tooMuch, tooMuch, "\x1B\\ok"});
        std::vector<std::size_t> sizes;
        for (const std::string& event : log.events) {
            if (event.size() > 100) sizes.push_back(static_cast<std::size_t>(std::ranges::count(event, 'x')));
        }
        EXPECT_EQ(sizes, std::vector<std::size_t>({limit - 2, limit - 1, limit}));
        EXPECT_EQ(log.events.back(), "print:ok");
    }

    ParserLog log({"\x1B[" + repeated("1;", EscapeSequenceParser::parameterLimit - 1) + "2;3:4m"});
    EXPECT_EQ(log.lastParameterCount, EscapeSequenceParser::parameterLimit);
    EXPECT_TRUE(log.events.back().ends_with(";1;2]m")) << log.events.back().substr(8000);
    log.parser.parse("\x1B[" + repeated(":;", 500'000) + "m\x1B[5;6m");
    EXPECT_EQ(log.events.back(), "csi [5;6]m");
    log.parser.parse("\x1B[?" + repeated("$", 1000) + "p");
    EXPECT_EQ(log.events.back(), "csi many [0]p");
    EXPECT_EQ(log.lastCollect, "?$$$$$$$");
}

TEST(EscapeSequenceParserTest, anyCutOfShortInputsMakesTheSameCalls) {
    std::mt19937 random(20240917);
    for (int round = 0; round < 3000; ++round) {
        const std::string input = hostileInput(random, 1 + random() % 40);
        SCOPED_TRACE(testing::PrintToString(input));
        const ParserLog whole({input});
        EXPECT_EQ(whole.brokenPromises, Events());
        for (std::size_t place = 0; place <= input.size(); ++place)
            ASSERT_EQ(ParserLog(cutAt(input, {place})).events, whole.events) << "cut at " << place;
        ASSERT_EQ(ParserLog(cutAt(input, everyPlace(input.size()))).events, whole.events) << "byte by byte";
    }
}

TEST(EscapeSequenceParserTest, anyCutOfLongInputsMakesTheSameCalls) {
    std::mt19937 random(5);
    std::vector<std::string> inputs = {recording("claude-ask-80x25.raw"), recording("codex-trust-80x25.raw"),
                                       recording("gemini-trust-80x25.raw")};
    for (int round = 0; round < 20; ++round)
        inputs.push_back(hostileInput(random, 4000));
    for (const std::string& input : inputs) {
        const ParserLog whole({input});
        ASSERT_GT(whole.events.size(), 50U);
        EXPECT_EQ(whole.brokenPromises, Events());
        EXPECT_TRUE(ParserLog(cutAt(input, everyPlace(input.size()))).events == whole.events);
        for (int cuts = 0; cuts < 10; ++cuts)
            ASSERT_TRUE(ParserLog(cutAt(input, randomPlaces(random, input.size()))).events == whole.events);
    }
}

TEST(EscapeSequenceParserTest, recordingsHoldNoErrors) {
    for (const char* name : {"claude-ask-80x25.raw", "codex-trust-80x25.raw", "gemini-trust-80x25.raw"}) {
        for (const std::string& event : ParserLog({recording(name)}).events)
            EXPECT_FALSE(event.starts_with("error") || event.starts_with("csi many")) << name << ": " << event;
    }
}

}  // namespace orvane
