#include "OrvaneCore/History/SessionHistory.h"

#include <gtest/gtest.h>

#include "OrvaneCore/Support/ShellText.h"
#include "Support/ShellRun.h"

namespace orvane {
namespace {

using SessionHistory::Provider;

TEST(SessionHistoryTest, whatResumesAConversationNamesItsIdAsOneWord) {
    EXPECT_EQ(SessionHistory::resumeCommand(Provider::claude, " 0f9a \n"), "claude --resume '0f9a'");
    EXPECT_EQ(SessionHistory::resumeCommand(Provider::codex, "a"), "codex resume 'a'");
    EXPECT_EQ(SessionHistory::resumeCommand(Provider::gemini, "it's"), R"(gemini --resume 'it'\''s')");
    EXPECT_EQ(SessionHistory::resumeCommand(Provider::gemini, " \t"), std::nullopt);
    for (const auto& [provider, name] : RawValues<Provider>::table) {
        for (const char* id : {"plain", "it's $(id) \"x\" \\ `y`", "--- "}) {
            const auto command = *SessionHistory::resumeCommand(provider, id);
            const auto word = shellWords(command).back();
            EXPECT_EQ(outputOfBash("printf '<%s>' " + command.substr(command.find('\''))), "<" + word + ">");
        }
    }
}

TEST(SessionHistoryTest, theIdIsReadFromTheCommandThatResumesIt) {
    const struct {
        const char* command;
        std::optional<std::string> id;
    } cases[] = {
        {"claude --resume '0f9a'", "0f9a"},
        {R"(gemini --resume 'it'\''s')", "it's"},
        {"codex resume a-b --model x", "a-b"},
        {"codex --model x resume \"a b\"", "a b"},
        {"codex resume --last", std::nullopt},
        {"codex resume", std::nullopt},
        {"claude --resume", std::nullopt},
        {"claude --resume ''", std::nullopt},
        {"claude 'please resume it'", std::nullopt},
        {"claude --resumed x", std::nullopt},
        {"resume x", std::nullopt},
        {"", std::nullopt},
    };
    for (const auto& [command, id] : cases)
        EXPECT_EQ(SessionHistory::resumeIdentifier(command), id) << command;
}

TEST(ShellTextTest, wordsAreThoseOfAShell) {
    for (const char* command : {R"(a  'b c'"d"\ e   '' "x\"\$\n\\")", "\t'\\'\tb", R"('it'\''s' "a'b")"}) {
        std::string words;
        for (const std::string& word : shellWords(command))
            words += "<" + word + ">";
        EXPECT_EQ(words, outputOfBash("for word in " + std::string(command) + "; do printf '<%s>' \"$word\"; done"))
            << command;
    }
    EXPECT_EQ(shellWords("a 'b c"), (std::vector<std::string>{"a", "b c"}));
    EXPECT_EQ(shellWords("a\\"), (std::vector<std::string>{"a"}));
    EXPECT_TRUE(shellWords(" \n\t").empty());
}

}  // namespace
}  // namespace orvane
