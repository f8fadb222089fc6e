#include <gtest/gtest.h>

#include "OrvaneCore/Agents/AgentConfig.h"

namespace orvane {
namespace {

using namespace AgentConfig;

TEST(AgentConfigTest, readsCodexConfig) {
    EXPECT_EQ(codexDefaults(std::nullopt), CodexDefaults());
    EXPECT_EQ(
        codexDefaults("model = \"gpt-5\"\nmodel_reasoning_effort = 'xhigh'\nsandbox_mode = \"workspace-write\"\n"),
        (CodexDefaults{.model = "gpt-5", .reasoningEffort = "xhigh", .sandbox = CodexSandbox::workspace}));
    EXPECT_EQ(codexDefaults("model = 5\nmodel_reasoning_effort = \"\"\nsandbox_mode = \"none\"\nbroken\n"
                            "[profiles.x]\nmodel = \"other\"\nsandbox_mode = \"read-only\""),
              CodexDefaults());
}

TEST(AgentConfigTest, readsTheFirstClaudeSettingsThatParse) {
    using Texts = std::vector<std::optional<std::string>>;
    const std::string user = R"({"model": "opus", "effort": "low", "permissions": {"defaultMode": "plan"}})";
    const ClaudeDefaults ofUser{.model = "opus", .effort = "low", .permissionMode = "plan"};
    for (const auto& [texts, expected] : std::vector<std::pair<Texts, ClaudeDefaults>>{
             {{}, {}},
             {{std::nullopt, "{broken", user}, ofUser},
             {{"[]", "", user}, ofUser},
             {{"{}", std::nullopt, user}, {}},
             {{R"({"effortLevel": "max", "effort": "low", "permissions": {"defaultMode": "manual"}})", user},
              {.effort = "max"}},
             {{R"({"model": "", "effortLevel": 3, "effort": "low", "permissions": "plan"})"}, {.effort = "low"}}})
        EXPECT_EQ(claudeDefaults(texts), expected);
    EXPECT_EQ(claudeSettingsPaths("/p", "/h/"),
              (std::array<std::string, 3>{"/p/.claude/settings.local.json", "/p/.claude/settings.json",
                                          "/h/.claude/settings.json"}));
    EXPECT_TRUE(hasStatusLine(R"({"statusLine": null})"));
    for (const std::optional<std::string>& text : Texts{std::nullopt, "", "{}", R"(["statusLine"])"})
        EXPECT_FALSE(hasStatusLine(text));
}

}  // namespace
}  // namespace orvane
