#include <gtest/gtest.h>

#include "TerminalEmulator/Engine/TestTerminal.h"

namespace orvane {
namespace {

using testing::TestTerminal;

TEST(EditTest, erasesInsertsDeletesAndShifts) {
    struct Case {
        std::string_view name;
        std::string_view input;  ///< after the letters, on a screen of 5 by 4
        std::string_view screen;
    };
    const Case cases[] = {
        {"ED 0", "\x1b[2;3H\x1b[J", "abcde|fg|"},
        {"ED 1", "\x1b[2;3H\x1b[1J", "|   ij|klmno|pqrst|"},
        {"ED 2", "\x1b[2;3H\x1b[2J", ""},
        {"EL 0", "\x1b[2;3H\x1b[K", "abcde|fg|klmno|pqrst|"},
        {"EL 1", "\x1b[2;3H\x1b[1K", "abcde|   ij|klmno|pqrst|"},
        {"EL 2", "\x1b[2;3H\x1b[2K", "abcde||klmno|pqrst|"},
        {"EL of no kind", "\x1b[2;3H\x1b[7K", "abcde|fghij|klmno|pqrst|"},
        {"ECH", "\x1b[2;3H\x1b[2X", "abcde|fg  j|klmno|pqrst|"},
        {"ICH", "\x1b[2;3H\x1b[2@", "abcde|fg  h|klmno|pqrst|"},
        {"DCH", "\x1b[2;3H\x1b[2P", "abcde|fgj|klmno|pqrst|"},
        {"ICH between margins", "\x1b[?69h\x1b[2;4s\x1b[2;3H\x1b[@", "abcde|fg hj|klmno|pqrst|"},
        {"DCH between margins", "\x1b[?69h\x1b[2;4s\x1b[2;3H\x1b[P", "abcde|fgi j|klmno|pqrst|"},
        {"DCH outside them", "\x1b[?69h\x1b[2;4s\x1b[2;5H\x1b[P", "abcde|fghij|klmno|pqrst|"},
        {"IL", "\x1b[2;3H\x1b[2L", "abcde|||fghij|"},
        {"DL", "\x1b[2;3H\x1b[2M", "abcde|pqrst|"},
        {"IL in a region", "\x1b[1;3r\x1b[2;3H\x1b[L", "abcde||fghij|pqrst|"},
        {"IL outside it", "\x1b[1;3r\x1b[4;3H\x1b[L", "abcde|fghij|klmno|pqrst|"},
        {"DL between margins", "\x1b[?69h\x1b[2;4s\x1b[2;3H\x1b[M", "abcde|flmnj|kqrso|p   t|"},
        {"IL between margins", "\x1b[?69h\x1b[2;4s\x1b[2;3H\x1b[L", "abcde|f   j|kghio|plmnt|"},
        {"SU", "\x1b[2S", "klmno|pqrst|"},
        {"SD", "\x1b[2T", "||abcde|fghij|"},
        {"SU by more than there is", "\x1b[999S", ""},
        {"SU between margins", "\x1b[?69h\x1b[2;4s\x1b[2;3r\x1b[S", "abcde|flmnj|k   o|pqrst|"},
        {"SL", "\x1b[2 @", "cde|hij|mno|rst|"},
        {"SR", "\x1b[2 A", "  abc|  fgh|  klm|  pqr|"},
        {"DECIC", "\x1b[2;3r\x1b[2;3H\x1b[2'}", "abcde|fg  h|kl  m|pqrst|"},
        {"DECDC", "\x1b[2;3r\x1b[2;3H\x1b[2'~", "abcde|fgj|klo|pqrst|"},
        {"DECFI at the right margin",
         "\x1b[2;5H\x1b"
         "9",
         "bcde|ghij|lmno|qrst|"},
        {"DECBI at the left margin",
         "\x1b[2;1H\x1b"
         "6",
         " abcd| fghi| klmn| pqrs|"},
        {"DECBI elsewhere",
         "\x1b[2;3H\x1b"
         "6x",
         "abcde|fxhij|klmno|pqrst|"},
        {"RI at the top", "\x1b[1;1H\x1bM", "|abcde|fghij|klmno|"},
        {"IND at the bottom",
         "\x1b[4;1H\x1b"
         "D",
         "fghij|klmno|pqrst|"},
        {"NEL",
         "\x1b[2;3H\x1b"
         "Ex",
         "abcde|fghij|xlmno|pqrst|"},
        {"DECALN", "\x1b#8", "EEEEE|EEEEE|EEEEE|EEEEE|"},
        {"DECCRA", "\x1b[1;1;2;3;1;3;2$v", "abcde|fghij|kabco|pfght|"},
        {"DECCRA over itself", "\x1b[1;1;3;4;1;2;2$v", "abcde|fabcd|kfghi|pklmn|"},
        {"DECCRA cut at the screen", "\x1b[1;1;4;5;1;3;4$v", "abcde|fghij|klmab|pqrfg|"},
        {"DECFRA", "\x1b[120;2;2;3;4$x", "abcde|fxxxj|kxxxo|pqrst|"},
        {"DECFRA with a control", "\x1b[7;2;2;3;4$x", "abcde|fghij|klmno|pqrst|"},
        {"DECERA", "\x1b[2;2;3;4$z", "abcde|f   j|k   o|pqrst|"},
        {"DECERA under DECOM", "\x1b[2;3r\x1b[?6h\x1b[1;2;9;4$z", "abcde|f   j|k   o|pqrst|"},
        {"DECERA of nothing", "\x1b[3;2;2;4$z", "abcde|fghij|klmno|pqrst|"},
        {"DECSED spares what DECSCA protects", "\x1b[2;1H\x1b[1\"qXY\x1b[0\"q\x1b[?2J", "|XY|"},
        {"ED does not", "\x1b[2;1H\x1b[1\"qXY\x1b[0\"q\x1b[2J", ""},
        {"DECSEL", "\x1b[2;1H\x1b[1\"qXY\x1b[0\"q\x1b[?2K", "abcde|XY|klmno|pqrst|"},
        {"DECSERA", "\x1b[2;2H\x1b[1\"qX\x1b[0\"q\x1b[1;1;4;3${", "   de| X ij|   no|   st|"},
        {"ED spares what SPA protects", "\x1b[2;1H\x1bVXY\x1bW\x1b[2J", "|XY|"},
        {"DECSED does not", "\x1b[2;1H\x1bVXY\x1bW\x1b[?2J", ""},
    };
    for (const Case& each : cases) {
        TestTerminal screen(5, 4);
        screen.feed("abcde\r\nfghij\r\nklmno\r\npqrst").feed(each.input);
        EXPECT_EQ(screen.screen(), each.screen) << each.name;
    }
}

TEST(EditTest, erasingLeavesTheBackgroundInUseAndNothingElse) {
    TestTerminal screen;
    screen.feed("\x1b[1;4;31;42mx\x1b[K\x1b[2;1H\x1b[3@\x1b[4;1H\n");
    const CharData blank{.attribute = {.bg = Attribute::Color::ansi256(2)}};
    EXPECT_EQ(screen.terminal.getCharData(1, 0), blank) << "inserted cells";
    EXPECT_EQ(screen.terminal.getCharData(5, 3), blank) << "the row that scrolled in";
}

TEST(EditTest, linesThatLeaveTheTopGoIntoTheHistoryWhateverTheRegionsBottom) {
    struct Case {
        std::string_view name;
        std::string_view input;  ///< after rows "1" to "4", on 10 by 4
        std::string_view all;
    };
    const Case cases[] = {
        {"the whole screen", "\x1b[4;1H\n\n", "1|2|3|4|"},
        {"a region from the top", "\x1b[1;2r\x1b[2;1H\n", "1|2||3|4|"},
        {"a region below the top", "\x1b[2;4r\x1b[4;1H\n", "1|3|4|"},
        {"SU", "\x1b[S", "1|2|3|4|"},
        {"deleted lines do not", "\x1b[H\x1b[M", "2|3|4|"},
        {"nor between margins", "\x1b[?69h\x1b[1;5s\x1b[4;1H\n", "2|3|4|"},
        {"nor on the alternate screen", "\x1b[?1047h\x1b[4;1Hx\n\n\n\n\n", ""},
        {"ED 3 forgets it", "\x1b[4;1H\n\x1b[3J", "2|3|4|"},
        {"ED 2 does not", "\x1b[4;1H\n\x1b[2J", "1|"},
    };
    for (const Case& each : cases) {
        TestTerminal screen;
        screen.feed("1\r\n2\r\n3\r\n4").feed(each.input);
        EXPECT_EQ(screen.all(), each.all) << each.name;
    }
}

TEST(EditTest, aRowContinuesTheOneAboveOnlyAsLongAsThatIsSo) {
    struct Case {
        std::string_view name;
        std::string_view input;  ///< after two rows of one line, on 10 by 4
        bool isWrapped;
    };
    const Case cases[] = {
        {"as it was", "", true},
        {"the end is erased", "\x1b[1;5H\x1b[K", false},
        {"the row is erased", "\x1b[2;5H\x1b[2K", false},
        {"the last column is written anew", "\x1b[1;10Hx", false},
        {"and wraps again", "\x1b[1;10Hxy", true},
        {"a line comes between", "\x1b[2;1H\x1b[L\x1b[3;1H", false},
        {"the line above goes", "\x1b[1;1H\x1b[M\x1b[1;1H", false},
        {"the first part scrolled away", "\x1b[4;1H\n\x1b[1;1H", true},
    };
    for (const Case& each : cases) {
        TestTerminal screen;
        screen.feed("0123456789ab").feed(each.input);
        const int y = screen.terminal.getCursorLocation().y;
        const int row = each.input.ends_with("\x1b[1;1H") || each.input.ends_with("\x1b[3;1H") ? y : 1;
        const Buffer& buffer = screen.terminal.buffer();
        EXPECT_EQ(buffer.row(buffer.yBase() + row).isWrapped, each.isWrapped) << each.name;
    }
}

TEST(EditTest, attributesOfAreasChangeAsAStreamOrAsARectangle) {
    const auto bold = [](TestTerminal& screen) {
        std::string marks;
        for (int y = 0; y < 3; ++y) {
            for (int x = 0; x < 5; ++x) {
                const auto style = screen.terminal.getCharData(x, y)->attribute.style;
                marks += style == Attribute::CharacterStyle::bold ? 'b' : '.';
            }
            marks += '|';
        }
        return marks;
    };
    for (const auto& [input, marks] : std::initializer_list<std::pair<std::string_view, std::string_view>>{
             {"\x1b[1;3;3;4;1$r", "..bbb|bbbbb|bbbb.|"},
             {"\x1b[2*x\x1b[1;3;3;4;1$r", "..bb.|..bb.|..bb.|"},
             {"\x1b[2*x\x1b[1;3;3;4;1$r\x1b[2;1;2;5;1$t", "..bb.|bb..b|..bb.|"},
             {"\x1b[2*x\x1b[1;1;3;5;1$r\x1b[2;2;2;3;0$r", "bbbbb|b..bb|bbbbb|"},
         }) {
        TestTerminal screen(5, 3);
        screen.feed("abcdefghijklmno").feed(input);
        EXPECT_EQ(bold(screen), marks) << input.substr(1);
    }
}

}  // namespace
}  // namespace orvane
