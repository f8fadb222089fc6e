#include <gtest/gtest.h>

#include <boost/json.hpp>

#include "OrvaneCore/Agents/Signals/AsyncTaskLedger.h"
#include "OrvaneCore/Agents/Signals/ClaudeHookFeed.h"
#include "OrvaneCore/Agents/Signals/ClaudeModelSwitch.h"
#include "OrvaneCore/Agents/Signals/CodexPicker.h"
#include "OrvaneCore/Support/Json.h"
#include "Support/Table.h"

namespace orvane {
namespace {

TEST(ClaudeHookFeedTest, writesSettingsInOneOrder) {
    const std::string kept = ClaudeHookFeed::settingsJson(ClaudeHookFeed::StatusLine::keep);
    const std::string hidden = ClaudeHookFeed::settingsJson(ClaudeHookFeed::StatusLine::hide);
    EXPECT_TRUE(kept.starts_with(
        R"({"hooks":{"UserPromptSubmit":[{"hooks":[{"type":"command","command":"echo prompt >> \"$ORVANE_HOOK_EVENTS\""}]}],"PreToolUse":)"))
        << kept;
    EXPECT_TRUE(kept.ends_with(
        R"("SessionStart":[{"matcher":"clear","hooks":[{"type":"command","command":"echo clear >> \"$ORVANE_HOOK_EVENTS\""}]}]}})"))
        << kept;
    EXPECT_EQ(hidden, R"({"statusLine":{"type":"command","command":":"},)" + kept.substr(1));
    EXPECT_TRUE(Json::parse(hidden));
}

TEST(ClaudeHookFeedTest, foldsEventsIntoAPhase) {
    for (const auto& [from, words, expected] : table<3>(R"(
        none     | prompt             | running
        none     | notify             | none
        running  | notify             | approval
        approval | notify             | approval
        ended    | notify             | ended
        none     | tool,notify,tool   | running
        none     | tool,stop,notify   | ended
        running  | what, stop ,other  | ended
        ended    | stop,clear         | none
        approval |                    | approval)")) {
        const auto phase = [](const std::string& name) -> std::optional<AgentPhase> {
            if (name == "none") return std::nullopt;
            if (name == "running") return AgentPhase::running;
            return name == "ended" ? AgentPhase::turnEnded : AgentPhase::awaitingApproval;
        };
        std::string text = words;
        std::ranges::replace(text, ',', '\n');
        EXPECT_EQ(ClaudeHookFeed::phase(ClaudeHookFeed::events(text), phase(from)), phase(expected)) << from << words;
    }
}

TEST(AsyncTaskLedgerTest, knowsWhatIsStillRunning) {
    AsyncTaskLedger ledger;
    const auto launch = [&](const std::string& id) {
        ledger.ingest(R"({"type":"user","message":{"content":[{"tool_use_id":")" + id +
                      R"(","type":"tool_result"}]},"toolUseResult":{"isAsync":true,"status":"async_launched"}})");
    };
    const auto notify = [](const std::string& id, const std::string& status) {
        return R"(<task-notification>\n<tool-use-id>)" + id + R"(</tool-use-id>\n<status>)" + status +
               R"(</status>\n</task-notification>)";
    };
    for (const char* id : {"a", "b", "b", "c"})
        launch(id);
    ledger.ingest(R"({"text":"\"status\":\"async_launched\"","tool_use_id":"d"})");
    ledger.ingest(R"({"status":"async_launched"})");
    EXPECT_EQ(ledger.openCount(), 3U);
    ledger.ingest(notify("a", "running") + notify("unknown", "completed") + notify("b", "completed"));
    ledger.ingest("<task-notification><tool-use-id>c</tool-use-id>");
    EXPECT_EQ(ledger.open(), (std::set<std::string, std::less<>>{"a", "c"}));
    ledger.ingest(notify("a", "killed") + notify("c", "failed"));
    EXPECT_TRUE(ledger.isEmpty());
}

TEST(ClaudeModelSwitchTest, findsTheNewestAndItsIdentifier) {
    const std::string text = "❯ /model\n  ⎿  Set model to Opus 5.5 and saved\n  ⎿  SET MODEL TO Sonnet 4.5\n● ok\n";
    EXPECT_EQ(ClaudeModelSwitch::detectInTerminalText(text), "Sonnet 4.5");
    EXPECT_EQ(ClaudeModelSwitch::detect("  ⎿  Set model to Opus 5.5 (1M context) and saved as your default"),
              "Opus 5.5 (1M context)");
    EXPECT_EQ(ClaudeModelSwitch::detectInTerminalText("Kept model as Opus\nset model to "), std::nullopt);
    for (const auto& [label, identifier] : table<2>(R"(
        Opus 5.5                               | claude-opus-5-5
        Claude Sonnet 4                        | claude-sonnet-4
        Sonnet 4.5 (1M context)                | claude-sonnet-4-5[1m]
        Opus                                   | opus
        Opus Plan Mode                         | opusplan
        Default (recommended)                  | default
        Default (currently Opus 5.5)           | claude-opus-5-5
        Opus 5.5 (claude-opus-5-5-20260101)    | claude-opus-5-5-20260101
        sonnet[1m]                             | sonnet[1m]
        something else                         | -)"))
        EXPECT_EQ(ClaudeModelSwitch::identifier(label).value_or("-"), identifier) << label;
}

TEST(CodexPickerTest, leadsToModelsByTheirPlaces) {
    const auto catalog = CodexPicker::parse(R"({"models":[
        {"slug":"old","priority":9,"supported_reasoning_levels":["low"]},
        {"slug":"codex-auto-balanced","priority":0},
        {"slug":"gpt","priority":2,"default_reasoning_level":"medium","supported_reasoning_levels":
            [{"effort":"low"},{"effort":"ultra"},{"effort":"high","description":"x"},{"effort":7}]},
        {"slug":"secret","priority":1,"visibility":"hide"},
        {"name":"none"},3,
        {"slug":"last","supported_reasoning_levels":["low"]}]})");
    ASSERT_TRUE(catalog);
    ASSERT_EQ(catalog->size(), 5U);
    EXPECT_EQ(
        (*catalog)[2],
        (CodexModel{.slug = "gpt", .visible = true, .defaultEffort = "medium", .efforts = {"low", "ultra", "high"}}));
    EXPECT_EQ(CodexPicker::efforts("nobody", *catalog), std::vector<std::string>());
    using Digits = std::optional<std::vector<int>>;
    EXPECT_EQ(CodexPicker::digits("gpt", "high", *catalog), Digits({1, 2}));
    EXPECT_EQ(CodexPicker::digits("last", "low", *catalog), Digits({3, 1}));
    for (const auto& [model, effort] : table<2>("gpt | ultra ; gpt | huge ; secret | low ; nobody | low"))
        EXPECT_EQ(CodexPicker::digits(model, effort, *catalog), std::nullopt) << model << effort;
    CodexPicker::Catalog many(10, {.slug = "x", .visible = true, .defaultEffort = {}, .efforts = {"low"}});
    many.back().slug = "tenth";
    EXPECT_EQ(CodexPicker::digits("tenth", "low", many), std::nullopt);
    for (const char* broken : {"", "[]", "{}", R"({"models":3})"})
        EXPECT_FALSE(CodexPicker::parse(broken)) << broken;
}

}  // namespace
}  // namespace orvane
