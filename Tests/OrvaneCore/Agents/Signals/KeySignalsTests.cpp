#include <gtest/gtest.h>

#include "OrvaneCore/Agents/Signals/PromptSubmission.h"
#include "OrvaneCore/Agents/Signals/TerminalComposer.h"
#include "OrvaneCore/Agents/Signals/TerminalOutputScanner.h"

namespace orvane {
namespace {

using namespace std::string_literals;

TEST(TerminalOutputScannerTest, tellsDrawingFromSequencesHoweverTheyAreCut) {
    struct Case {
        std::string bytes;
        TerminalOutputScanner::Result expected;
    };
    for (const Case& each : std::vector<Case>{{"a", {.printable = true, .bell = false}},
                                              {"\x1b[31;1H\x1b(", {}},
                                              {"\x1b]0;\xE2\x9C\xB3 title\x07", {}},
                                              {"\x1b]0;title\x1b\\", {}},
                                              {"\a", {.printable = false, .bell = true}},
                                              {"\x1bPq\x1b[5m\x07", {.printable = false, .bell = true}},
                                              {"\x1b_Gi=31\x1b]t\x07", {}},
                                              {"\r\n\t\x7f\x08", {}},
                                              {"\x1b(B\x1b=é", {.printable = true, .bell = false}}}) {
        for (std::size_t cut = 0; cut <= each.bytes.size(); ++cut) {
            TerminalOutputScanner scanner;
            const auto first = scanner.scan(each.bytes.substr(0, cut));
            const auto second = scanner.scan(each.bytes.substr(cut));
            EXPECT_EQ(first.printable || second.printable, each.expected.printable) << each.bytes << cut;
            EXPECT_EQ(first.bell || second.bell, each.expected.bell) << each.bytes << cut;
        }
    }
}

TEST(PromptSubmissionTest, needsAReturnAndText) {
    for (const std::string& bytes : {"hello\r"s, "\x1b[200~two\nlines\x1b[201~\r"s, "\xFF\n"s})
        EXPECT_TRUE(PromptSubmission::submits(bytes, std::nullopt)) << bytes;
    for (const std::string& bytes : {"hello"s, "\r"s, " \x1b[A\r\n"s, ""s}) {
        EXPECT_FALSE(PromptSubmission::submits(bytes, std::nullopt)) << bytes;
        EXPECT_FALSE(PromptSubmission::submits(bytes, " \n")) << bytes;
    }
    EXPECT_TRUE(PromptSubmission::submits("\r", "draft"));
    EXPECT_FALSE(PromptSubmission::submits("\x1b[A", "draft"));
}

TEST(DialogAnswerTest, isAReturnOrOneDigit) {
    for (const char* bytes : {"\r", "x\n", "2", " 9\t", "２"})
        EXPECT_TRUE(DialogAnswer::closesDialog(bytes)) << bytes;
    for (const char* bytes : {"", "0", "12", "\x1b[B", "y", "½", "\xFF", "2\x1b"})
        EXPECT_FALSE(DialogAnswer::closesDialog(bytes)) << bytes;
}

TEST(TerminalComposerTest, readsTheLowestDraft) {
    struct Case {
        std::vector<std::string> rows;
        std::vector<bool> dimmed;
        std::optional<std::string> expected;
    };
    for (const Case& each : std::vector<Case>{
             {{"> old", "text", "❯\u00A0new"}, {}, "new"},
             {{"│ > in a box      │", "│   goes on       │", "╰─────────────────╯", "  hint"}, {}, "in a box\ngoes on"},
             {{"› first", "    indented", "", "  third", "", "  hint", ""}, {}, "first\n  indented\n\nthird"},
             {{"› first", "  hint"}, {false, true}, "first"},
             {{"❯ faint"}, {true}, ""},
             {{" > Type your message or @path/to/file"}, {}, ""},
             {{">"}, {}, ""},
             {{">no blank", "text"}, {}, std::nullopt},
             {std::vector<std::string>(33, "text"), {}, std::nullopt},
             {{}, {}, std::nullopt}}) {
        EXPECT_EQ(TerminalComposer::draft(each.rows, each.dimmed), each.expected)
            << ::testing::PrintToString(each.rows);
    }
    std::vector<std::string> rows(33, "text");
    rows.front() = "> too far";
    EXPECT_EQ(TerminalComposer::draft(rows, {}), std::nullopt);
    for (const char* chrome : {" ", "\u00A0", ">", "▌", "|"})
        EXPECT_TRUE(TerminalComposer::isChrome(chrome)) << chrome;
    EXPECT_FALSE(TerminalComposer::isChrome("a"));
}

}  // namespace
}  // namespace orvane
