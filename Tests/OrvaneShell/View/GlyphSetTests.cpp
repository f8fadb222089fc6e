#include "OrvaneShell/View/GlyphSet.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

#include "OrvaneShell/View/FrameWriter.h"
#include "Support/CanvasEdits.h"

namespace orvane {
namespace {

TEST(GlyphSetTest, ReplacesWhatIsMissingAndKeepsTheRest) {
    const struct {
        std::string_view text;
        std::string_view console;
        std::string_view ascii;
    } cases[] = {
        {"plain ~", "plain ~", "plain ~"},
        {"● ○ ◦ ✓ ✗ ◌ ◆ ⏺ ▸ ▾ ▶ ❯", "* o o v x . # * > v > >", "* o o v x . # * > v > >"},
        {"─│╭╮╰╯━├", "─│┌┐└┘─├", "-|++++-+"},
        {"▕███▍ ▏", "│███▌ │", "|#### |"},
        {"←↓↑→", "<v^>", "<v^>"},
        {"Größe ñ Å", "Größe ñ Å", "Grose n A"},
        {"“a” ‘b’ – c…", "\"a\" 'b' - c.", "\"a\" 'b' - c."},
        {"日本", "日本", "??"},
        {"⠋✢✶", "***", "***"},
    };
    for (const auto& [text, console, ascii] : cases) {
        EXPECT_EQ(textIn(GlyphSet::all, text), text);
        EXPECT_EQ(textIn(GlyphSet::console, text), console);
        EXPECT_EQ(textIn(GlyphSet::ascii, text), ascii);
    }
    // Whatever a program prints: nothing but ASCII, and on a console nothing that turns into something to replace.
    for (char32_t character = 0x80; character < 0x30000; ++character) {
        EXPECT_LT(glyphIn(GlyphSet::ascii, character), 0x80U) << std::hex << int(character);
        const char32_t onConsole = glyphIn(GlyphSet::console, character);
        EXPECT_EQ(glyphIn(GlyphSet::console, onConsole), onConsole) << std::hex << int(character);
    }
}

TEST(GlyphSetTest, FramesKeepTheirColumns) {
    OuterTerminal outer = OuterTerminal::of("vt220", "", false, "C");
    Canvas canvas(20, 3);
    CanvasPen pen(canvas, {0, 0, 20, 3});
    pen.text(0, 0, "日本│ ● e\u0301 👩‍👩‍👧 end",
             {.fg = Attribute::Color::ansi256(1), .style = Attribute::CharacterStyle::bold});
    FrameWriter writer(outer);
    const std::string bytes = writer.frame(canvas);
    EXPECT_TRUE(std::ranges::all_of(bytes, [](char byte) { return static_cast<unsigned char>(byte) < 0x80; })) << bytes;
    EXPECT_TRUE(bytes.contains("\x1b[1m")) << bytes;
    EXPECT_FALSE(bytes.contains("31")) << "a terminal without colours was sent one: " << bytes;
    testing::OuterScreen screen(20, 3);
    screen.terminal.feed(bytes);
    EXPECT_EQ(screen.terminal.getLine(0).translateToString(screen.terminal.clusters(), {.trimsRight = true}),
              "? ? | * e ?  end");
}

}  // namespace
}  // namespace orvane
