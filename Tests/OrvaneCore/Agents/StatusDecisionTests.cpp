#include "OrvaneCore/Agents/StatusDecision.h"

#include <gtest/gtest.h>

#include <map>

#include "OrvaneCore/Agents/ClaudeSessionStatus.h"
#include "OrvaneCore/Agents/PermissionCycle.h"
#include "OrvaneCore/Agents/PromptTyping.h"
#include "Support/Table.h"

namespace orvane {
namespace {

const std::map<std::string, SessionStatus> statuses = {{"ready", {SessionStatus::Ready{}}},
                                                       {"working", {SessionStatus::Working{}}},
                                                       {"waiting", {SessionStatus::Waiting{}}},
                                                       {"idle", {SessionStatus::Idle{}}}};
const std::map<char, SilenceVerdict> verdicts = {
    {'w', SilenceVerdict::working}, {'n', SilenceVerdict::needsUser}, {'f', SilenceVerdict::finished}};
const std::map<char, AgentPhase> phases = {
    {'r', AgentPhase::running}, {'a', AgentPhase::awaitingApproval}, {'e', AgentPhase::turnEnded}};

/// Words: screen:dbc (dialog, busy, composer), title:/file: (working, needs the user, finished), hooks:/log: (running,
/// awaiting approval, turn ended), pattern:wb, "new" (hooks arrived), "news", "quiet", "asked", "missed", "told" (for
/// long), "untouched".
StatusLook lookOf(const std::string& kind, const std::string& from, const std::string& words) {
    StatusLook look{.kind = *fromRawValue<SessionKind>(kind), .status = statuses.at(from), .userHasInteracted = true};
    std::istringstream all(words);
    for (std::string word; all >> word;) {
        const std::size_t colon = word.find(':');
        const std::string name = word.substr(0, colon);
        const std::string says = colon == std::string::npos ? "" : word.substr(colon + 1);
        if (name == "screen") {
            look.screen = {says.contains('d'), says.contains('b'), says.contains('c')};
        } else if (name == "title") {
            look.title = verdicts.at(says[0]);
        } else if (name == "file") {
            look.statusFile = verdicts.at(says[0]);
        } else if (name == "hooks") {
            look.hooks = {.arrived = false, .seen = true, .phase = {}};
            if (says != "-") look.hooks.phase = phases.at(says[0]);
        } else if (name == "log") {
            look.agentPhase = phases.at(says[0]);
        } else if (name == "pattern") {
            look.patterns = {true, says.contains('w'), says.contains('b')};
        } else if (name == "new") {
            look.hooks.arrived = true;
        } else if (name == "news") {
            look.hasNews = true;
        } else if (name == "quiet") {
            look.silence = 6.1;
        } else if (name == "asked") {
            look.hasRequest = true;
        } else if (name == "missed") {
            look.waitingEvidenceMisses = 1;
        } else if (name == "told") {
            look.toldWorkingFor = 6.1;
        } else if (name == "untouched") {
            look.userHasInteracted = false;
        } else {
            ADD_FAILURE() << word;
        }
    }
    return look;
}

std::string told(const StatusDecision& decision) {
    std::string text = decision.status ? std::string(decision.status->name()) + " by " : "stays";
    if (decision.status) text += rawValue(decision.source);
    if (decision.waitingEvidenceMisses > 0) text += ", missed";
    return text + (decision.provesInteraction ? ", proven" : "");
}

TEST(StatusDecisionTest, weighsTheEvidenceInItsOrder) {
    for (const auto& [kind, from, words, expected] : table<4>(R"(
        # nothing is decided while the agent draws
        claude | working | screen:c                            | stays
        claude | working | screen:c hooks:e                    | stays
        claude | working | screen:c hooks:e new                | idle by hooks
        claude | working | screen:c quiet                      | idle by transcript
        # a dialog needs no silence, and comes before everything
        claude | working | screen:d                            | waiting by screen
        claude | idle    | screen:d title:f file:w hooks:e     | waiting by screen
        codex  | working | screen:d title:w log:r              | waiting by screen
        gemini | working | screen:d title:f                    | waiting by screen
        # Claude: the screen, its file, its hooks, its title
        claude | working | screen:b file:f quiet               | idle by statusFile
        claude | idle    | file:n news                         | waiting by statusFile
        claude | idle    | screen:b hooks:e quiet              | working by screen
        claude | working | screen:c hooks:r quiet              | idle by hooks
        claude | working | hooks:a                             | waiting by hooks
        claude | working | hooks:a title:w                     | waiting by hooks
        claude | working | hooks:- new                         | working by hooks
        claude | idle    | hooks:e title:w news                | working by title
        claude | working | screen:b hooks:r title:f news       | idle by title
        claude | working | log:a quiet                         | working by transcript
        # Codex and Gemini: screen and title before the transcript
        codex  | working | title:w log:e quiet                 | working by title
        codex  | working | title:f log:r news                  | idle by title
        codex  | idle    | screen:bc log:e quiet               | working by screen
        codex  | working | screen:c log:r quiet                | idle by screen
        codex  | working | log:r quiet                         | working by transcript
        codex  | working | log:a quiet                         | waiting by transcript
        codex  | working | log:e quiet                         | idle by transcript
        codex  | working | quiet                               | working by transcript
        codex  | ready   | quiet                               | stays
        gemini | idle    | title:n news                        | waiting by title
        # a wait survives one blank look, and ends at once when the agent says so
        claude | waiting | screen:d asked missed quiet         | stays
        claude | waiting | screen:c asked quiet                | stays, missed
        claude | waiting | screen:c asked missed               | idle by transcript
        claude | waiting | screen:c asked title:w              | working by title
        claude | waiting | screen:c asked title:f news         | idle by title
        claude | waiting | screen:c title:f                    | stays, missed
        claude | waiting | file:n                              | stays
        codex  | waiting | screen:c asked                      | stays, missed
        codex  | waiting | title:n missed                      | stays
        gemini | waiting | asked missed                        | stays
        gemini | waiting | asked title:f missed                | idle by title
        # nobody has given it anything to do
        claude | ready   | untouched screen:d quiet            | ready by start
        claude | ready   | untouched title:w news              | ready by start
        claude | ready   | untouched file:w told news          | working by statusFile, proven
        codex  | ready   | untouched title:w told news         | working by title, proven
        gemini | ready   | untouched title:n news              | waiting by title, proven
        claude | waiting | untouched missed                    | ready by start
        # the user's own agents
        custom | idle    | pattern:b quiet                     | working by patterns
        custom | working | pattern:wb quiet                    | waiting by patterns
        custom | working | pattern:- quiet                     | stays
        custom | working | pattern:- quiet screen:c            | idle by screen
        custom | working | quiet screen:c                      | idle by screen
        custom | working | quiet                               | ready by output
        custom | working | screen:c                            | stays
        custom | waiting | pattern:w missed                    | waiting by patterns
        custom | waiting | pattern:- missed                    | stays
        custom | idle    | untouched pattern:b quiet           | ready by start)")) {
        EXPECT_EQ(told(StatusDecision::decide(lookOf(kind, from, words))), expected) << kind << from << words;
    }
}

TEST(ClaudeSessionStatusTest, isBelievedWhenNothingHappenedSince) {
    const auto said = ClaudeSessionStatus::parse(R"({"status":"busy","waitingFor":3,"statusUpdatedAt":100000})");
    ASSERT_TRUE(said);
    EXPECT_EQ(said->trustedVerdict(Date{100.9}, Date{99}), SilenceVerdict::working);
    EXPECT_EQ(said->trustedVerdict(Date{101.1}, Date{99}), SilenceVerdict::unknown);
    EXPECT_EQ(said->trustedVerdict(Date{99}, Date{100.1}), SilenceVerdict::unknown);
    for (const char* broken : {"", "[]", "{", R"({"status":"busy"})", R"({"status":"busy","statusUpdatedAt":-1})"})
        EXPECT_FALSE(ClaudeSessionStatus::parse(broken)) << broken;
}

TEST(PermissionCycleTest, countsTheKeysToAMode) {
    using enum PermissionCycle::Bypass;
    // without and with the bypass in the cycle
    for (const auto& [from, to, without, with] : table<4>(R"(
        default           | plan              | 2 | 2
        plan              | default           | 1 | 2
                          | acceptEdits       | 1 | 1
        plan              | plan              | 0 | 0
        plan              | bypassPermissions | 0 | 1
        bypassPermissions | default           | 0 | 1
        default           | dontAsk           | 0 | 0)")) {
        EXPECT_EQ(PermissionCycle::steps(from, to, excluded), std::stoi(without)) << from << to;
        EXPECT_EQ(PermissionCycle::steps(from, to, included), std::stoi(with)) << from << to;
    }
}

TEST(PromptTypingTest, leavesOutWhatWouldEndThePaste) {
    using enum PromptTyping::Marks;
    EXPECT_EQ(PromptTyping::bytes("a\nb\tc", paste), "\x1b[200~a\nb\tc\x1b[201~");
    EXPECT_EQ(PromptTyping::bytes("a\x1b[201~\rb\x1b[A\x1b\x1b[200~c", paste), "\x1b[200~a\rb[Ac\x1b[201~");
    EXPECT_EQ(PromptTyping::bytes("é\x1b[31m\x03\x04\x15\x7f", none), "é[31m");
    EXPECT_EQ(PromptTyping::bytes("a\r\nb\rc\n", none), "a\nb\nc\n");
    EXPECT_EQ(PromptTyping::returnDelay(std::string(20000, 'x')), Seconds(1.08));
    EXPECT_NEAR(PromptTyping::returnDelay("ééé").count(), 0.08 + 3.0 / 20000, 1e-9);
}

TEST(PromptTypingTest, recognisesItsTextInTheComposer) {
    for (const auto& [draft, prompt, expected] : table<3>(R"(
        fix it                          | fix it                                       | y
        fix the tests in the parser     | fix the tests in the parser and run them     | y
        the testsin the parser          | fix the tests in the parser and run them     | y
        [Pasted text #1 +20 lines]      | anything                                     | y
        [Pasted Content 1234 chars]     | anything                                     | y
        fix it now                      | fix it                                       | n
        fix                             | fix it                                       | n
        pasted                          | anything                                     | n
                                        | anything                                     | n)"))
        EXPECT_EQ(PromptTyping::isShown(draft, prompt), expected == "y") << draft;
}

TEST(PromptTypingTest, knowsAClearThatIsTyped) {
    for (const auto& [draft, bytes, expected] : table<3>(R"(
        /clear | \r | y
        /cle | ar\r | y
        - | /clear\r | y
        /clear | x | n
        /clear | \ all\r | n
        no /clear | \r | n)")) {
        std::string typed = bytes;
        if (typed.ends_with("\\r")) typed.replace(typed.size() - 2, 2, "\r");
        std::erase(typed, '\\');
        const auto shown = draft == "-" ? std::nullopt : std::optional(draft);
        EXPECT_EQ(PromptTyping::completesClear(shown, typed), expected == "y") << draft << bytes;
    }
}

}  // namespace
}  // namespace orvane
