#include <gtest/gtest.h>

#include "Orvane/Agents/ScriptedScreen.h"

namespace orvane::testing {
namespace {

std::string pasted(const std::string& text) {
    return "\x1b[200~" + text + "\x1b[201~";
}

class PromptDeliveryTest : public ScriptedScreenTest {
 protected:
    /// The turn ends, and whatever held prompts up for a moment is over.
    void endTurn() {
        composer("");
        session->setStatus({SessionStatus::Idle{}}, StatusSource::hooks);
        pass(1.3);
    }
};

TEST_F(PromptDeliveryTest, pastesAtOnceAndPressesReturnWhenTheTextIsIn) {
    for (const SessionKind each : {SessionKind::claude, SessionKind::codex, SessionKind::gemini}) {
        startIdle(each);
        const auto number = prompts().send("one\ntwo \x1b[201~\x1b[A", {});
        EXPECT_EQ(screen->taken(), pasted("one\ntwo [A"));
        EXPECT_EQ(decided(), "working by input");
        EXPECT_EQ(prompts().prompt(number)->state, PromptState::delivering);
        pass(0.079);
        EXPECT_EQ(screen->taken(), "");
        pass(0.01);
        EXPECT_EQ(screen->taken(), "\r");
        busy("");
        pass(5);
        EXPECT_EQ(screen->taken(), "");
        EXPECT_EQ(prompts().prompt(number), nullptr);
    }
    startIdle(SessionKind::claude);
    prompts().send(std::string(20000, 'x'), {});
    EXPECT_EQ(screen->taken().size(), 20012U);
    pass(1.07);
    EXPECT_EQ(screen->taken(), "");
    pass(0.02);
    EXPECT_EQ(screen->taken(), "\r");
}

TEST_F(PromptDeliveryTest, waitsForOthersHoweverLongThatTakes) {
    const std::vector<std::pair<PromptObstacle, std::function<void()>>> obstacles = {
        {PromptObstacle::working,
         [this] {
             agent().type("go\r");
             busy("");
         }},
        {PromptObstacle::dialog, [this] { ask("Do you want to proceed?"); }},
        {PromptObstacle::draft, [this] { composer("half a senten"); }}};
    for (const SessionKind each : {SessionKind::claude, SessionKind::codex, SessionKind::gemini}) {
        for (const auto& [obstacle, begin] : obstacles) {
            startIdle(each);
            begin();
            screen->taken();
            prompts().send("hello", {});
            pass(120);
            EXPECT_EQ(promptStates(), "q") << rawValue(each) << static_cast<int>(obstacle);
            EXPECT_EQ(prompts().obstacle(), obstacle) << rawValue(each);
            EXPECT_EQ(screen->taken(), "");
            session->setStatus({SessionStatus::Idle{}}, StatusSource::hooks);
            composer("");
            pass(0.5);
            EXPECT_EQ(screen->taken(), pasted("hello") + "\r") << rawValue(each) << static_cast<int>(obstacle);
        }
    }
    // A key that the screen does not show yet is a draft too.
    startIdle(SessionKind::claude);
    agent().type("h");
    prompts().send("hello", {});
    pass(0.5);
    composer("h");
    pass(10);
    EXPECT_EQ(screen->taken(), "h");
}

TEST_F(PromptDeliveryTest, waitsForANewProgramAndGivesUpAfterHalfAMinute) {
    start(SessionKind::claude);
    prompts().send("one", {});
    prompts().send("two", {});
    pass(29.9);
    EXPECT_EQ(promptStates(), "qq");
    EXPECT_EQ(session->transientNotice(), "");
    pass(0.2);
    EXPECT_EQ(promptStates(), "fq");
    EXPECT_EQ(session->transientNotice(), "The request could not be sent");
    EXPECT_EQ(status(), "ready");
    pass(30.1);
    EXPECT_EQ(promptStates(), "ff");
    pass(60);
    EXPECT_EQ(screen->taken(), "");

    // Without a composer a silence has to do.
    start(SessionKind::custom);
    screen->feed("welcome");
    prompts().send("one", {});
    pass(1.15);
    EXPECT_EQ(screen->taken(), "");
    pass(0.5);
    EXPECT_EQ(screen->taken(), "one\r");
}

TEST_F(PromptDeliveryTest, keepsTheOrder) {
    startIdle(SessionKind::claude);
    for (const char* text : {"one", "two", "three"})
        prompts().send(text, {});
    EXPECT_EQ(promptStates(), "dqq");
    EXPECT_TRUE(prompts().promptIsQueued());
    for (const char* text : {"one", "two", "three"}) {
        pass(0.2);
        EXPECT_EQ(screen->taken(), pasted(text) + "\r");
        busy("");
        pass(20);
        EXPECT_EQ(screen->taken(), "");
        endTurn();
    }
    EXPECT_EQ(promptStates(), "");
}

TEST_F(PromptDeliveryTest, pressesASwallowedReturnAgainAsLongAsItsTextStands) {
    const std::string text = "do the thing in the parser\nand the lexer";
    for (const char* shown : {"do the thing in the parser", "[Pasted text #1 +20 lines]"}) {
        startIdle(SessionKind::claude);
        prompts().send(text, {});
        composer(shown);
        pass(0.1);
        EXPECT_EQ(screen->taken(), pasted(text) + "\r");
        for (int again = 0; again < 3; ++again) {
            pass(1.15);
            EXPECT_EQ(screen->taken(), "");
            pass(0.05);
            EXPECT_EQ(screen->taken(), "\r") << again;
        }
        pass(30);
        EXPECT_EQ(screen->taken(), "");
        EXPECT_EQ(promptStates(), "s");
        endTurn();  // somebody has sent it on
        look();
        EXPECT_EQ(promptStates(), "");
    }
    // Another text, an agent at work and a question keep the second Return back.
    const std::vector<std::pair<std::string, std::function<void()>>> ends = {
        {"", [this] { composer("do something else, which I type"); }},
        {"", [this] { busy(""); }},
        {"d", [this] { title("◐ Claude Code"); }},
        {"", [this] { ask("Do you want to proceed?"); }}};
    for (const auto& [state, end] : ends) {
        startIdle(SessionKind::claude);
        prompts().send(text, {});
        composer("do the thing in the parser");
        pass(0.1);
        end();
        screen->taken();
        pass(20);
        EXPECT_EQ(screen->taken(), "");
        EXPECT_EQ(promptStates(), state);
    }
}

TEST_F(PromptDeliveryTest, neverAnswersAQuestionThatComesUpBehindThePaste) {
    // What the composer shows when the question is gone, what is typed then, and what became of the prompt.
    for (const auto& [shown, typed, state] : std::vector<std::array<std::string, 3>>{
             {"hello you", "\r", "d"}, {"", "", "f"}, {"words of somebody", "", "f"}}) {
        for (const SessionKind each : {SessionKind::claude, SessionKind::codex}) {
            startIdle(each);
            prompts().send("hello you", {});
            ask("Do you trust this folder?");
            EXPECT_EQ(screen->taken(), pasted("hello you"));
            pass(20);
            EXPECT_EQ(screen->taken(), "");
            composer(shown);
            pass(0.5);
            EXPECT_EQ(screen->taken(), typed) << shown;
            EXPECT_EQ(promptStates(), state) << shown;
        }
    }
}

TEST_F(PromptDeliveryTest, switchesTheModelFirst) {
    startIdle(SessionKind::claude);
    prompts().send("hello", "opus");
    EXPECT_EQ(screen->taken(), "/model opus");
    composer("/model opus");
    pass(0.2);
    EXPECT_EQ(screen->taken(), "\r");
    composer("");
    pass(0.7);
    EXPECT_EQ(screen->taken(), "");
    pass(0.6);
    EXPECT_EQ(screen->taken(), pasted("hello") + "\r");
    EXPECT_EQ(agent().controls().settings().modelName, "opus");
    endTurn();
    prompts().send("again", "opus");
    EXPECT_EQ(screen->taken(), pasted("again"));

    start(SessionKind::custom);
    composer("");
    pass(2);
    prompts().send("hello", "opus");
    EXPECT_EQ(screen->taken(), "hello");
}

TEST_F(PromptDeliveryTest, marksPastesForProgramsThatAskForIt) {
    start(SessionKind::custom);
    composer("");
    pass(2);
    prompts().send("one\r\ntwo\x03", {});
    EXPECT_EQ(screen->taken(), "one\ntwo");
    pass(0.2);
    EXPECT_EQ(screen->taken(), "\r");
    screen->feed("\x1b[?2004h");
    composer("");
    pass(20);
    prompts().send("one\ntwo", {});
    EXPECT_EQ(screen->taken(), pasted("one\ntwo"));
}

}  // namespace
}  // namespace orvane::testing
