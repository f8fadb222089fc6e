#include "OrvaneCore/Agents/ModelName.h"

#include <gtest/gtest.h>

#include "OrvaneCore/Agents/ContextWindowBudget.h"

namespace orvane {
namespace {

TEST(ModelNameTest, IsToldToPeople) {
    const struct {
        const char* slug;
        const char* shortened;
        const char* display;
    } cases[] = {{"claude-opus-4-5-20251101", "opus-4.5", "Opus 4.5"},
                 {"claude-sonnet-4-5-20250929[1m]", "sonnet-4.5[1m]", "Sonnet 4.5 1M"},
                 {"claude-3-5-haiku-20241022", "3.5-haiku", "3.5 Haiku"},
                 {"gpt-5.2-codex", "gpt-5.2-codex", "GPT-5.2 Codex"},
                 {"gpt-oss", "gpt-oss", "GPT Oss"},
                 {"gemini-2.5-pro", "gemini-2.5-pro", "Gemini 2.5 Pro"},
                 {"opus[1m]", "opus[1m]", "Opus 1M"},
                 {"--", "--", ""},
                 {"", "", ""}};
    for (const auto& [slug, shortened, display] : cases) {
        EXPECT_EQ(ModelName::shortened(slug), shortened);
        EXPECT_EQ(ModelName::display(slug), display);
    }
    EXPECT_TRUE(ModelName::isMeant("claude-opus-4-5", "opus[1m]"));
    EXPECT_FALSE(ModelName::isMeant("claude-opus-4-5", "sonnet"));
    EXPECT_FALSE(ModelName::isMeant("claude-opus-4-5", ""));
}

TEST(ContextWindowBudgetTest, TellsHowFullAContextIs) {
    using ContextWindowBudget::usedFraction;
    using ContextWindowBudget::window;
    using enum TranscriptProvider;
    EXPECT_DOUBLE_EQ(usedFraction(80'000, 200'000, claude), 0.5) << "it compacts at four fifths";
    EXPECT_DOUBLE_EQ(usedFraction(136'000, 260'000, codex), 0.5) << "12,000 are its own";
    EXPECT_DOUBLE_EQ(usedFraction(5'000, 260'000, codex), 0);
    EXPECT_DOUBLE_EQ(usedFraction(500, 1'000, gemini), 0.5);
    for (const TranscriptProvider provider : {claude, codex, gemini}) {
        EXPECT_DOUBLE_EQ(usedFraction(1LL << 60, 1'000'000, provider), 1);
        EXPECT_DOUBLE_EQ(usedFraction(-5, 1'000'000, provider), 0);
        EXPECT_DOUBLE_EQ(usedFraction(5, 0, provider), 0);
    }
    EXPECT_EQ(window(claude, "claude-opus-4-5", {}, 10), 200'000);
    EXPECT_EQ(window(claude, "claude-opus-4-5", {}, 200'001), 1'000'000) << "more than a small window holds";
    EXPECT_EQ(window(claude, "sonnet[1m]", {}, 10), 1'000'000);
    EXPECT_EQ(window(codex, "gpt-6", 258'400, 10), 258'400);
    EXPECT_EQ(window(codex, "gpt-6", {}, 10), std::nullopt);
}

}  // namespace
}  // namespace orvane
