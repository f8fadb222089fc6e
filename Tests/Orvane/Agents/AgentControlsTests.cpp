#include <gtest/gtest.h>

#include "Orvane/Agents/ScriptedScreen.h"

namespace orvane::testing {
namespace {

template <typename Refusal>
std::optional<Refusal> refusal(const std::expected<void, Refusal>& done) {
    return done ? std::nullopt : std::optional(done.error());
}

class AgentControlsTest : public ScriptedScreenTest {
 protected:
    AgentControls& controls() { return agent().controls(); }
    std::optional<ControlRefusal> mode(const char* name) { return refusal(controls().setPermissionMode(name)); }
    std::optional<ControlRefusal> model(const char* name) { return refusal(controls().setModel(name)); }
    std::optional<ControlRefusal> effort(const char* name) { return refusal(controls().setEffort(name)); }

    /// Codex with a catalog in which "gpt" is the third model and "high" its second effort.
    void startCodex() {
        std::filesystem::create_directories(folder.path(".codex"));
        folder.write(".codex/models_cache.json", R"({"models":[{"slug":"a"},{"slug":"b"},
            {"slug":"gpt","supported_reasoning_levels":["medium","high"]}]})");
        startIdle(SessionKind::codex);
    }
};

TEST_F(AgentControlsTest, stepsThroughTheModesOfClaude) {
    const std::string key = "\x1b[Z";
    startIdle(SessionKind::claude);
    EXPECT_EQ(mode("plan"), std::nullopt);
    EXPECT_EQ(screen->taken(), key + key);
    EXPECT_EQ(mode("plan"), std::nullopt);
    EXPECT_EQ(screen->taken(), "");
    EXPECT_EQ(mode("default"), std::nullopt);
    EXPECT_EQ(screen->taken(), key);
    EXPECT_EQ(mode("bypassPermissions"), ControlRefusal::unknown);
    ask("Do you want to proceed?");
    EXPECT_EQ(mode("plan"), ControlRefusal::busy);
    start(SessionKind::claude, "claude --dangerously-skip-permissions");
    EXPECT_EQ(mode("default"), std::nullopt);
    EXPECT_EQ(screen->taken(), key);
    // Nobody knows how many keys it is from here.
    start(SessionKind::claude, "claude --permission-mode dontAsk");
    EXPECT_EQ(mode("plan"), ControlRefusal::unknown);
    EXPECT_EQ(controls().settings().permissionMode, "dontAsk");
    startIdle(SessionKind::codex);
    EXPECT_EQ(mode("plan"), ControlRefusal::unsupported);
    EXPECT_EQ(screen->taken(), "");
}

TEST_F(AgentControlsTest, typesCommandsInThePlaceOfADraft) {
    startIdle(SessionKind::claude);
    composer("a draft");
    EXPECT_EQ(model("opus"), std::nullopt);
    EXPECT_EQ(screen->taken(), "\x05" + std::string(7, '\x7f') + "/model opus");
    composer("/model opus");
    EXPECT_EQ(effort("high"), std::nullopt);  // the next one, before the first is through
    EXPECT_EQ(screen->taken(), "");
    pass(0.2);
    EXPECT_EQ(screen->taken(), "\r");
    composer("");
    pass(0.6);
    EXPECT_EQ(screen->taken(), "/effort high");
    pass(0.2);
    EXPECT_EQ(screen->taken(), "\r");
    EXPECT_EQ(controls().settings().effortLevel, "high");
    prompts().send("hello", {});
    pass(1);
    EXPECT_EQ(screen->taken(), "a draft");
    composer("a draft");
    pass(10);
    EXPECT_EQ(screen->taken(), "");

    // A question that follows does not get the draft for an answer.
    startIdle(SessionKind::claude);
    composer("1");
    EXPECT_EQ(model("opus"), std::nullopt);
    pass(0.2);
    screen->taken();
    ask("Switch the model?");
    pass(20);
    EXPECT_EQ(screen->taken(), "");
    EXPECT_EQ(status(), "waiting");
    composer("");
    pass(0.3);
    EXPECT_EQ(screen->taken(), "1");

    startIdle(SessionKind::gemini);
    EXPECT_EQ(effort("high"), ControlRefusal::unsupported);
    EXPECT_EQ(model("pro"), std::nullopt);
    EXPECT_EQ(screen->taken(), "/model set pro");
}

TEST_F(AgentControlsTest, refusesWhatWouldLoseWordsOrDisturb) {
    for (const char* draft : {"first line\n  second line", "[Pasted text #1 +20 lines]", "see [Image #2]"}) {
        startIdle(SessionKind::claude);
        composer(draft);
        EXPECT_EQ(model("opus"), ControlRefusal::draftBusy) << draft;
        EXPECT_EQ(controls().settings().modelName, std::nullopt);
    }
    startIdle(SessionKind::claude);
    agent().type("go\r");
    screen->taken();
    EXPECT_EQ(model("opus"), ControlRefusal::busy);
    startIdle(SessionKind::claude);
    ask("Do you want to proceed?");
    EXPECT_EQ(effort("high"), ControlRefusal::busy);
    start(SessionKind::custom);
    EXPECT_EQ(model("opus"), ControlRefusal::unsupported);
    EXPECT_EQ(screen->taken(), "");
}

TEST_F(AgentControlsTest, leadsThePickerOfCodex) {
    startIdle(SessionKind::codex);
    EXPECT_EQ(model("gpt"), std::nullopt);  // no catalog
    EXPECT_EQ(screen->taken(), "/model gpt");

    startCodex();
    composer("fix 3 tests");
    EXPECT_EQ(model("gpt"), std::nullopt);
    pass(0.2);
    EXPECT_EQ(screen->taken(), "\x05" + std::string(11, '\x7f') + "/model\r");
    composer("");
    pass(1);
    ask("Select Model and Effort", {"a", "b", "gpt"});  // late
    pass(0.3);
    EXPECT_EQ(screen->taken(), "3");
    ask("Select Reasoning Level for gpt", {"medium", "high"});
    pass(0.8);
    EXPECT_EQ(screen->taken(), "1");
    EXPECT_EQ(status(), "idle");
    EXPECT_EQ(notified, 0);
    composer("");
    pass(1.5);
    EXPECT_EQ(screen->taken(), "fix 3 tests");
    EXPECT_EQ(effort("high"), std::nullopt);

    startCodex();
    EXPECT_EQ(model("gpt"), std::nullopt);
    composer("");
    pass(20);  // the picker never comes: its digits would be a draft
    EXPECT_EQ(screen->taken(), "/model\r");
    prompts().send("hello", {});
    EXPECT_TRUE(screen->taken().contains("hello"));
}

class AgentAnswersTest : public ScriptedScreenTest {
 protected:
    std::optional<AnswerRefusal> answer(const char* text) { return refusal(agent().answers().answer(text)); }
    void startAsking(SessionKind ofKind, const std::vector<std::string>& options, int selected = 1) {
        startIdle(ofKind);
        ask("Which one?", options, selected);
        pass(2);
    }
};

TEST_F(AgentAnswersTest, typesTheKeyOfAnOption) {
    for (const SessionKind each : {SessionKind::claude, SessionKind::codex, SessionKind::gemini}) {
        for (const auto& [text, typed] : std::vector<std::pair<const char*, std::string>>{
                 {"2", "2"}, {" blue ", "2"}, {"1", "1"}, {"Red", "1"}, {"3", ""}, {"0", ""}, {"-1", ""}, {"x", ""}}) {
            startAsking(each, {"Red", "Blue"});
            EXPECT_EQ(status(), "waiting");
            EXPECT_EQ(answer(text), typed.empty() ? std::optional(AnswerRefusal::noSuchOption) : std::nullopt) << text;
            EXPECT_EQ(screen->taken(), typed) << rawValue(each);
            EXPECT_EQ(status(), typed.empty() ? "waiting" : "working");
        }
        startAsking(each, {"Red", "Blue"}, 2);
        EXPECT_EQ(refusal(agent().answers().approve()), AnswerRefusal::anotherSelected);
        EXPECT_EQ(screen->taken(), "");
        EXPECT_EQ(refusal(agent().answers().deny()), std::nullopt);
        EXPECT_EQ(screen->taken(), "\x1b");
        startIdle(each);
        EXPECT_EQ(refusal(agent().answers().approve()), AnswerRefusal::nothingAsked);
        EXPECT_EQ(refusal(agent().answers().deny()), AnswerRefusal::nothingAsked);
        EXPECT_EQ(answer("1"), AnswerRefusal::nothingAsked);
        EXPECT_EQ(screen->taken(), "");
    }
}

TEST_F(AgentAnswersTest, typesWordsIntoTheFieldForThem) {
    startAsking(SessionKind::claude, {"Red", "Blue", "Type something."});
    EXPECT_EQ(answer("dark\ngreen\x1b\r"), std::nullopt);
    EXPECT_EQ(screen->taken(), "3");
    pass(0.35);
    EXPECT_EQ(screen->taken(), "dark green");
    pass(0.35);
    EXPECT_EQ(screen->taken(), "\r");
    startAsking(SessionKind::claude, {"Red", "Type something."});
    EXPECT_EQ(answer(" \n"), AnswerRefusal::noSuchOption);
}

TEST_F(AgentAnswersTest, leavesListsToTheUserFromWhichSeveralMayBeTaken) {
    startAsking(SessionKind::claude, {"[ ] Desktop", "[ ] Server", "[ ] Type something"});
    for (const char* text : {"1", "Desktop", "words"})
        EXPECT_EQ(answer(text), AnswerRefusal::notByKey) << text;
    EXPECT_EQ(refusal(agent().answers().approve()), AnswerRefusal::notByKey);
    EXPECT_EQ(screen->taken(), "");
}

TEST_F(AgentAnswersTest, givesADialogAMomentAndTypesOnlyIfItStillAsks) {
    // What happens in that moment, and what is typed of an approval and of a 2.
    const std::vector<std::array<std::string, 3>> cases = {
        {"nothing", "\r", "2"}, {"moved", "", "2"}, {"gone", "", ""}, {"another", "", ""}};
    for (const auto& [happens, approval, second] : cases) {
        for (const bool approves : {true, false}) {
            startIdle(SessionKind::claude);
            ask("Do you want to proceed?");
            EXPECT_EQ(approves ? refusal(agent().answers().approve()) : answer("2"), std::nullopt);
            pass(0.1);
            EXPECT_EQ(screen->taken(), "");
            if (happens == "moved") ask("Do you want to proceed?", {"Yes", "No"}, 2);
            if (happens == "gone") composer("");
            if (happens == "another") ask("Do you want to push?");
            pass(0.25);
            EXPECT_EQ(screen->taken(), approves ? approval : second) << happens;
        }
    }
}

}  // namespace
}  // namespace orvane::testing
