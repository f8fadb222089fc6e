#include <gtest/gtest.h>

#include "TerminalEmulator/Engine/Hex.h"
#include "TerminalEmulator/Engine/RecordingDelegate.h"
#include "TerminalEmulator/Terminal.h"

namespace orvane {
namespace {

struct Answer {
    std::string bytes;
    std::string expected;
};

/// Each in a terminal of its own, of 80 by 24.
void expectAnswers(const std::vector<Answer>& answers, TerminalOptions options = {}) {
    options.rows = 24;
    for (const Answer& row : answers) {
        RecordingDelegate delegate;
        Terminal terminal(delegate, options);
        terminal.feed(row.bytes);
        EXPECT_EQ(testing::PrintToString(delegate.sent), testing::PrintToString(row.expected))
            << testing::PrintToString(row.bytes);
    }
}

TEST(Answers, AttributesFollowTheNameOfTheTerminal) {
    expectAnswers({{"\033[c", "\033[?65;1;4;6;9;15;21;22;28;52c"},
                   {"\033[0c\033[1c", "\033[?65;1;4;6;9;15;21;22;28;52c"},
                   {"\033[>c", "\033[>0;276;0c"},
                   {"\033[=c", "\033P!|00000000\033\\"},
                   {"\033 G\033[>c\033[=c", "\x9B>0;276;0c\x90!|00000000\x9C"}});
    expectAnswers({{"\033[c", "\033[?65;1;6;9;15;21;22;28;52c"}}, {.enableSixelReported = false});
    expectAnswers({{"\033[c\033[>c", "\033[?1;2;4c\033[>85;95;0c"}}, {.termName = "rxvt-unicode-256color"});
    expectAnswers({{"\033[c\033[>c", "\033[?1;2c\033[>83;40003;0c"}},
                  {.termName = "screen", .enableSixelReported = false});
    expectAnswers({{"\033[c", "\033[?6c"}}, {.termName = "linux", .enableSixelReported = false});
}

TEST(Answers, StatusOfTheDevice) {
    expectAnswers({{"\033[5n", "\033[0n"},
                   {"\033[3;7H\033[6n\033[?6n", "\033[3;7R\033[?3;7;1R"},
                   {"\033[5;10r\033[?6h\033[2;3H\033[6n", "\033[2;3R"},
                   {"\033[?15n\033[?25n\033[?26n", "\033[?10n\033[?21n\033[?27;1;0;0n"},
                   {"\033[?55n\033[?56n\033[?62n", "\033[?53n\033[?57;1n\033[0*{"},
                   {"\033[?63;9n\033[?75n\033[?85n", "\033P9!~0000\033\\\033[?70n\033[?83n"},
                   {"\033[?996n", "\033[?997;1n"},
                   {"\033[7n\033[?7n", ""},
                   {"\033[x\033[1x\033[2x", "\033[2;1;1;128;128;1;0x\033[3;1;1;128;128;1;0x"},
                   {"\033[?1;1;0S\033[?9;1;0S\033[?2;5;0S", "\033[?1;3;0S\033[?9;1;0S\033[?2;2;0S"},
                   {"\033[\"v", "\033[24;80;1;1;1\"w"},
                   {"\033[&u", "\033P0!u%5\033\\"}});
}

TEST(Answers, ModesAreToldByTheirState) {
    expectAnswers(
        {{"\033[?7$p\033[?7l\033[?7$p", "\033[?7;1$y\033[?7;2$y"},
         {"\033[?25l\033[?25$p\033[?1049h\033[?1049$p", "\033[?25;2$y\033[?1049;1$y"},
         {"\033[?1000;1006h\033[?1000$p\033[?1002$p\033[?1006$p\033[?1005$p",
          "\033[?1000;1$y\033[?1002;2$y\033[?1006;1$y\033[?1005;2$y"},
         {"\033[?2027$p\033[?4711$p\033[?1007h\033[?1007$p", "\033[?2027;3$y\033[?4711;0$y\033[?1007;1$y"},
         {"\033[4h\033[4$p\033[20$p\033[12$p\033[19$p\033[99$p",
          "\033[4;1$y\033[20;2$y\033[12;1$y\033[19;4$y\033[99;0$y"},
         // Saved, changed, restored; what was not saved stays.
         {"\033[?1002;2004h\033[?1000;1002;2004s\033[?1002;2004l\033[?1;1000;1002;2004r\033[?1002$p\033[?2004$p",
          "\033[?1002;1$y\033[?2004;1$y"},
         // An unknown one does not keep the others.
         {"\033[?4711;2004h\033[?2004$p", "\033[?2004;1$y"}});
}

TEST(Answers, KeyboardEnhancementsAreStackedForEachScreen) {
    expectAnswers(
        {{"\033[>5u\033[?u\033[>1u\033[?u\033[<u\033[?u\033[<9u\033[?u", "\033[?5u\033[?1u\033[?5u\033[?0u"},
         {"\033[=3u\033[=4;2u\033[?u\033[=1;3u\033[?u\033[=255;9u\033[?u", "\033[?7u\033[?6u\033[?6u"},
         {"\033[>1u\033[?1049h\033[?u\033[>2u\033[?1049l\033[?u", "\033[?0u\033[?1u"},
         {"\033[>2147483647u\033[?u", "\033[?31u"},
         {"\033[?4m\033[>4;2m\033[?4m\033[>4n\033[?4m\033[>4m\033[?4m", "\033[>4;0m\033[>4;2m\033[>4n\033[>4;0m"},
         {"\033[>1;0;4m\033[>m\033[?1m\033P$qm\033\\", "\033[>1;2m\033P1$r0m\033\\"}});
    std::string pushes;
    for (int i = 0; i < 1000; ++i)
        pushes += "\033[>1u";
    RecordingDelegate delegate;
    Terminal terminal(delegate);
    terminal.feed(pushes);
    EXPECT_EQ(terminal.keyboardMode().stack.size(), KeyboardModeState::maximumStack);
}

TEST(Answers, SettingsAreToldAsTheFunctionThatSetsThem) {
    const auto asked = [](const std::string& before, const std::string& name, const std::string& value) {
        return Answer{before + "\033P$q" + name + "\033\\", "\033P1$r" + value + name + "\033\\"};
    };
    expectAnswers({asked("", "m", "0"),
                   asked("\033[1;3;4;7;9;31;102m", "m", "0;1;3;4;7;9;31;102"),
                   asked("\033[4:3;38:5:208;48:2::1:2:3;58:5:9m", "m", "0;4:3;38:5:208;48:2::1:2:3;58:5:9"),
                   asked("\033[21m", "m", "0;21"),
                   asked("\033[3;10r", "r", "3;10"),
                   asked("\033[?69h\033[5;20s", "s", "5;20"),
                   asked("\033[4 q", " q", "4"),
                   asked("\033[1\"q", "\"q", "1"),
                   asked("", "\"p", "65;1"),
                   asked("\033[62;1\"p", "\"p", "62;1"),
                   asked("\033[61;0\"p", "\"p", "61"),
                   asked("", "t", "24"),
                   asked("", "$|", "80"),
                   asked("\033[2*x", "*x", "2"),
                   {"\033P$qz\033\\\033P$q\033\\", "\033P0$r\033\\\033P0$r\033\\"},
                   {"\033P$q" + std::string(100'000, 'm') + "\033\\", "\033P0$r\033\\"},
                   // One that was cancelled leaves nothing to the next.
                   {"\033P$qx\x18\033P$qr\033\\", "\033P1$r1;24r\033\\"},
                   {"\033[64;0\"p\033[5n",
                    "\x9B"
                    "0n"}});
}

TEST(Answers, CapabilitiesUntilTheFirstThatIsNotKnown) {
    const auto hex = [](std::string_view text) { return Hex::encode(text); };
    const std::string colors = hex("Co") + "=" + hex("256");
    expectAnswers({{"\033P+q" + hex("Co") + "\033\\", "\033P1+r" + colors + "\033\\"},
                   {"\033P+q" + hex("Co") + ";" + hex("TN") + "\033\\",
                    "\033P1+r" + colors + ";" + hex("TN") + "=" + hex("xterm-256color") + "\033\\"},
                   {"\033P+q" + hex("Co") + ";" + hex("nope") + ";" + hex("RGB") + "\033\\",
                    "\033P1+r" + colors + "\033\\\033P0+r" + hex("nope") + "\033\\"},
                   {"\033P+q" + hex("Tc") + "\033\\", "\033P1+r" + hex("Tc") + "\033\\"},
                   {"\033[?1h\033P+q" + hex("ku") + "\033\\", "\033P1+r" + hex("ku") + "=" + hex("\033OA") + "\033\\"},
                   {"\033P+qxyz\033\\\033P+q\033\\", "\033P0+r\033\\\033P0+r\033\\"}});
}

TEST(Answers, ChecksumsOfAnArea) {
    // "A" is 0x41; sums are negated unless the extension says otherwise.
    expectAnswers({{"AB\033[7;1;1;1;1;2*y", "\033P7!~FF7D\033\\"},
                   {"\033[1#yAB\033[7;1;1;1;1;2*y", "\033P7!~0083\033\\"},
                   {"\033[1#y\033[1;4;7mA\033[1;1;1;1;1;1*y", "\033P1!~00F1\033\\"},
                   {"\033[3#y\033[1;4;7mA\033[1;1;1;1;1;1*y", "\033P1!~0041\033\\"},
                   {"\033[1#yA B  \033[1;1;1;1;1;80*y", "\033P1!~00A3\033\\"},
                   {"\033[5#yA B  \033[1;1;1;1;1;5*y", "\033P1!~00E3\033\\"},
                   {"\033[13#yA\033[1;4HB\033[1;1;1;1;1;9*y", "\033P1!~0083\033\\"},
                   {"\033[1#y\033[1;1;1;1;1;1*y", "\033P1!~0020\033\\"},
                   {"\033[33#y\xC3\xA9\033[1;1;1;1;1;1*y", "\033P1!~00E9\033\\"},
                   {"\033[17#y\xE6\xBC\xA2\033[1;1;1;1;1;2*y", "\033P1!~6F22\033\\"},
                   {"\033[1;1;9;9;2;2*y", "\033P1!~0000\033\\"}});
    RecordingDelegate delegate;
    delegate.isTrusted = false;
    Terminal terminal(delegate);
    terminal.feed("A\033[1;1;1;1;1;1*y");
    EXPECT_EQ(delegate.sent, "\033P1!~0000\033\\");
}

TEST(Answers, PresentationCanBeRestoredFromItsReport) {
    expectAnswers({{"\033[2$w\033[0$w\033[3$w", "\033P2$u1/9/17/25/33/41/49/57/65/73\033\\"},
                   {"\033[3g\033[1;5H\033H\033[2$w", "\033P2$u5\033\\"},
                   {"\033(0\033-A\033[1;7m\033[3;4H\033[1$w", "\033P1$u3;4;1;I;@;@;0;2;B;0ABB\033\\"},
                   {"\033P1$t3;4;1;I;A;A;1;2;B;0A%5B\033\\\033[1$w", "\033P1$u3;4;1;I;A;A;1;2;B;0A%5B\033\\"},
                   {"\033P2$t3/7/80\033\\\033[2$w", "\033P2$u3/7/80\033\\"},
                   // What is malformed changes nothing.
                   {"\033P2$t3/x\033\\\033[3g\033P2$t4/0\033\\\033[2$w", "\033P2$u\033\\"},
                   {"\033P1$t3;4;1;I;A;A;1;2;B;0A\033\\\033P1$t3;4;1;I;A;A;9;2;B;0ABB\033\\\033[1$w",
                    "\033P1$u1;1;1;@;@;@;0;2;@;BBBB\033\\"}});
}

TEST(Answers, SizesTitlesAndTheirStacks) {
    expectAnswers({{"\033[11t\033[13t\033[18t\033[19t", "\033[1t\033[3;0;0t\033[8;24;80t\033[9;24;80t"},
                   {"\033[14t\033[16t", ""},
                   {"\033]2;a\033\\\033]1;b\033\\\033[21t\033[20t", "\033]la\033\\\033]Lb\033\\"},
                   {"\033]0;a\a\033[22t\033]0;b\a\033[23;2t\033[20t\033[21t", "\033]Lb\033\\\033]la\033\\"},
                   {"\033[>0;1t\033]2;4869\a\033[21t\033]2;xyz\a\033[21t", "\033]l4869\033\\\033]l4869\033\\"},
                   {"\033[>2;3T\033]2;\xE9\a\033[21t", "\033]l\xE9\033\\"},
                   {"\033[>3T\033]2;\xE6\xBC\xA2\xC3\xA9\a\033[21t", "\033]l?\xE9\033\\"}});
    RecordingDelegate delegate;
    delegate.cellSize = {.width = 8, .height = 16};
    Terminal terminal(delegate, {.rows = 24});
    terminal.feed("\033[14t\033[14;2t\033[15t\033[16t");
    EXPECT_EQ(delegate.takeSent(), "\033[4;384;640t\033[4;384;640t\033[5;384;640t\033[6;16;8t");
    delegate.isTrusted = false;
    terminal.feed("\033]2;secret\a\033[21t");
    EXPECT_EQ(delegate.takeSent(), "\033]l\033\\");
}

}  // namespace
}  // namespace orvane
