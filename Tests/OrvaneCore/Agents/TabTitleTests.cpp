#include "OrvaneCore/Agents/TabTitle.h"

#include <gtest/gtest.h>

#include "OrvaneCore/Support/Text.h"

namespace orvane {
namespace {

TEST(TabTitleTest, aTitleIsWhatAPersonAsked) {
    const struct {
        std::string text;
        std::optional<std::string> title;
    } cases[] = {
        {"  Fix\nthe  build ", "Fix the build"}, {"<orvane-mode plan>Be brief.</orvane-mode>\nFix it", "Fix it"},
        {"<orvane-mode never closed", {}},       {"/home/me/a.txt is broken", "/home/me/a.txt is broken"},
        {"\x1b[31mred\x07", "[31mred"},          {"⠋ ✳ Working", "Working"},
    };
    for (const auto& [text, title] : cases)
        EXPECT_EQ(TabTitle::fromPrompt(text), title) << text;
    for (const char* none : {"", " \n", "✳ ", "<command-name>/clear</command-name>", "[Request interrupted by user]",
                             "Caveat: x", "/compact now", "# AGENTS.md instructions for /p"})
        EXPECT_EQ(TabTitle::fromPrompt(none), std::nullopt) << none;
    const auto title = TabTitle::fromPrompt(std::string(100000, 'x'));
    EXPECT_EQ(Text::characterCount(title.value_or("")), TabTitle::longest);
}

}  // namespace
}  // namespace orvane
