#include "OrvaneCore/Support/OutputLines.h"

#include <gmock/gmock.h>

namespace orvane {
namespace {

using ::testing::ElementsAre;

TEST(OutputLinesTest, aLineLooksAsItIsLeftOnATerminal) {
    const struct {
        std::string_view line;
        std::string_view shown;
    } cases[] = {
        {"plain  text\t.", "plain  text\t."},
        {"line\r", "line"},
        {"10%\r50%\rdone", "done"},
        {"100%\r50", "50"},
        {"10%\x1b[1G\x1b[0Kdone", "done"},
        {"busy\r\x1b[K", ""},
        {"kept\x1b[K", "kept"},
        {"x|\b/\b-\b", "x"},
        {"\xc3\xa9\b.", "."},
        {"\x1b[1;31mred\x1b[0m\x1b(B \x1b]8;;http://x\x1b\\link\x1b]8;;\a \x1b[?25l\xc2\x9b"
         "1mC1\xc2\x85",
         "red link C1"},
        {"bad \xff\xc3( \x01\x7f", "bad \xef\xbf\xbd\xef\xbf\xbd( "},
        {"cut \x1b[12", "cut "},
        {"cut \x1b]title", "cut "},
        {"cut \x1b", "cut "},
    };
    for (const auto& each : cases)
        EXPECT_EQ(OutputLines::shown(each.line), each.shown) << each.line;
}

TEST(OutputLinesTest, linesAreTheSameHoweverTheBytesAreSplit) {
    const std::string text = "one\r\n\n10%\r\x1b[32mtw\xc3\xb6\x1b[m\nlast";
    for (std::size_t split = 0; split <= text.size(); ++split) {
        OutputLines output;
        std::vector<std::string> lines = output.append(text.substr(0, split));
        for (std::string& line : output.append(text.substr(split)))
            lines.push_back(std::move(line));
        EXPECT_THAT(lines, ElementsAre("one", "", "tw\xc3\xb6")) << split;
        EXPECT_EQ(output.finish(), "last");
        EXPECT_EQ(output.finish(), std::nullopt);
    }
}

TEST(OutputLinesTest, aLineWithoutAnEndIsBrokenAndAProgressBarHoldsNoMemory) {
    OutputLines output;
    std::string all;
    const std::string umlauts = "\xc3\xb6\xc3\xb6\xc3\xb6";
    for (std::size_t count = 0; count < OutputLines::longestLine; ++count)
        for (const std::string& line : output.append(umlauts))
            all += line;
    EXPECT_GT(all.size(), OutputLines::longestLine * 4);
    EXPECT_EQ(all.find("\xef\xbf\xbd"), std::string::npos) << "a character was cut";
    EXPECT_TRUE(output.append("\n").front().size() <= OutputLines::longestLine);

    for (std::size_t count = 0; count < OutputLines::longestLine; ++count)
        EXPECT_TRUE(output.append("\r" + std::to_string(count) + "% of it").empty());
    EXPECT_EQ(output.finish(), std::to_string(OutputLines::longestLine - 1) + "% of it");
}

}  // namespace
}  // namespace orvane
