#include <gtest/gtest.h>

#include <map>

#include "OrvaneCore/Agents/AgentCommand.h"
#include "OrvaneCore/Agents/AgentStatusRule.h"
#include "Support/Table.h"

namespace orvane {
namespace {

TEST(AgentCommandTest, tellsCommandsFromPathsAndTalk) {
    const std::string longest(64, 'a');
    for (const std::string& text :
         std::vector<std::string>{"/review:fast arg", "\n /a_b-C9\tx", "/clear", "/état\nwhy", "/e\u0301",
                                  "/" + longest, "/" + longest + " x", "/名前\u3000x"})
        EXPECT_TRUE(AgentCommand::isSlashCommand(text)) << text;
    for (const std::string& text : std::vector<std::string>{"/usr/bin/env", "/", "", " ", "/ x", "//x", "x /clear",
                                                            "/a.b", "/a,", "/" + longest + "a", "/\xC3", "/a\xC3"})
        EXPECT_FALSE(AgentCommand::isSlashCommand(text)) << text;
    EXPECT_TRUE(AgentCommand::clearsContext("  /clear\n"));
    for (const char* text : {"/clear all", "/Clear", "clear", "/clear/"})
        EXPECT_FALSE(AgentCommand::clearsContext(text)) << text;
}

const std::map<std::string, std::optional<AgentPhase>> phases = {{"none", std::nullopt},
                                                                 {"running", AgentPhase::running},
                                                                 {"approval", AgentPhase::awaitingApproval},
                                                                 {"ended", AgentPhase::turnEnded}};
const std::map<std::string, SilenceVerdict> verdicts = {{"unknown", SilenceVerdict::unknown},
                                                        {"working", SilenceVerdict::working},
                                                        {"needsUser", SilenceVerdict::needsUser},
                                                        {"finished", SilenceVerdict::finished}};

TEST(AgentStatusRuleTest, weighsPhaseAndScreen) {
    // phase, screen (waiting, busy), by the phase alone, without hooks, with hooks
    for (const auto& [phase, screen, alone, claude, hooked] : table<5>(R"(
        none     | -  | unknown   | finished  | unknown
        running  | -  | working   | finished  | finished
        approval | -  | needsUser | working   | needsUser
        ended    | -  | finished  | finished  | finished
        none     | b  | unknown   | working   | working
        ended    | b  | finished  | working   | working
        approval | b  | needsUser | working   | working
        running  | w  | working   | needsUser | needsUser
        ended    | wb | finished  | needsUser | needsUser)")) {
        const AgentStatusRule::ScreenEvidence evidence{.awaitsUser = screen.contains('w'),
                                                       .isBusy = screen.contains('b')};
        const auto known = phases.at(phase);
        EXPECT_EQ(AgentStatusRule::verdict(known), verdicts.at(alone)) << phase;
        EXPECT_EQ(AgentStatusRule::claudeVerdict(known, evidence), verdicts.at(claude)) << phase << screen;
        EXPECT_EQ(AgentStatusRule::hookedClaudeVerdict(known, evidence), verdicts.at(hooked)) << phase << screen;
        for (const auto& [name, previous] : verdicts) {
            EXPECT_EQ(AgentStatusRule::reconciledVerdict(known, evidence, previous),
                      hooked == "unknown" ? previous : verdicts.at(hooked));
        }
    }
}

TEST(AgentStatusRuleTest, believesPatternsThatMatch) {
    using enum CustomAgentVerdict;
    for (const CustomAgentVerdict previous : {waiting, working, ready}) {
        const auto check = [&](AgentStatusRule::PatternEvidence evidence, CustomAgentVerdict fresh,
                               CustomAgentVerdict reconciled) {
            EXPECT_EQ(AgentStatusRule::customVerdict(evidence), fresh);
            EXPECT_EQ(AgentStatusRule::reconciledCustomVerdict(evidence, previous), reconciled);
        };
        check({}, ready, previous);
        check({.hasPatterns = true}, ready, previous);
        check({.hasPatterns = true, .busyMatched = true}, working, working);
        check({.hasPatterns = true, .waitingMatched = true, .busyMatched = true}, waiting, waiting);
    }
}

}  // namespace
}  // namespace orvane
