#include <gtest/gtest.h>

#include "OrvaneCore/Agents/LaunchPlan.h"
#include "Support/ShellRun.h"
#include "Support/Table.h"

namespace orvane {
namespace {

const std::string freshID = "0123abcd-89ef-4a6b-8c7d-fedcba987654";

LaunchRequest request(SessionKind kind, std::optional<std::string> command = std::nullopt) {
    return {.kind = kind,
            .command = std::move(command),
            .baseEnvironment = {"TERM=xterm-256color", "COLORTERM=truecolor"},
            .loginEnvironment = EnvironmentEntries(),
            .freshTranscriptID = *Uuid::parse(freshID)};
}

/// The last argument, which is the command; "error" when there is no plan.
std::string commandOf(const LaunchRequest& request) {
    const auto plan = LaunchPlan::compose(request);
    return plan ? plan->arguments.back() : "error";
}

TEST(LaunchPlanTest, choosesTheCommandOfTheKind) {
    // kind, given, arguments
    for (const auto& [kind, given, expected] : table<3>(R"(
        shell   | -            | -l
        shell   | htop         | -l
        codex   | -            | -c,codex
        gemini  | gemini --yolo| -c,gemini --yolo
        codex   | codex resume 'x' | -c,codex resume 'x'
        service | -            | -c,exec zsh -l
        custom  | -            | -c,exec zsh -l
        custom  | goose session| -c,goose session
        service |              | -c,exec zsh -l)")) {
        const auto plan = LaunchPlan::compose(
            request(*fromRawValue<SessionKind>(kind), given == "-" ? std::nullopt : std::optional(given)));
        ASSERT_TRUE(plan);
        std::string joined = plan->arguments.front();
        for (std::size_t index = 1; index < plan->arguments.size(); ++index)
            joined += "," + plan->arguments[index];
        EXPECT_EQ(joined, expected);
        EXPECT_EQ(plan->executable, "/bin/zsh");
        EXPECT_EQ(plan->forcedTranscriptID, std::nullopt);
    }
    LaunchRequest inBash = request(SessionKind::service);
    inBash.shell = "/usr/bin/bash";
    EXPECT_EQ(commandOf(inBash), "exec bash -l");
    EXPECT_EQ(LaunchPlan::compose(inBash)->executable, "/usr/bin/bash");
}

TEST(LaunchPlanTest, namesNewTranscriptsOfClaudeAndHooksItsOwnCommand) {
    // command, whether its transcript is new, whether it takes the hook feed
    for (const auto& [command, isNew, isHooked] : table<3>(R"(
        claude | y | y; claude --model opus | y | y; claude --resume 'x' | n | y; claude --continue | n | y
        claude -r | n | y; claude -c | n | y; claude --session-id x | n | y; claude --resume x --fork-session | n | y
        claude-beta | y | n; npx claude | n | n; exec claude | n | n)")) {
        LaunchRequest launch = request(SessionKind::claude, command);
        launch.hookFeed = {.eventsPath = "/tmp/e", .settingsJson = "{}"};
        const auto plan = LaunchPlan::compose(launch);
        ASSERT_TRUE(plan);
        EXPECT_EQ(plan->forcedTranscriptID, isNew == "y" ? std::optional(freshID) : std::nullopt) << command;
        EXPECT_EQ(plan->arguments.back(), command + (isNew == "y" ? " --session-id " + freshID : "") +
                                              (isHooked == "y" ? " --settings '{}'" : ""));
        EXPECT_EQ(EnvironmentList::value(plan->environment, "ORVANE_HOOK_EVENTS"),
                  isHooked == "y" ? std::optional<std::string>("/tmp/e") : std::nullopt)
            << command;
        EXPECT_EQ(LaunchPlan::takesHookFeed(SessionKind::claude, command), isHooked == "y") << command;
        EXPECT_FALSE(LaunchPlan::takesHookFeed(SessionKind::codex, command));
    }
    EXPECT_TRUE(LaunchPlan::takesHookFeed(SessionKind::claude, std::nullopt));
}

LaunchRequest full(SessionKind kind) {
    LaunchRequest launch = request(kind);
    launch.browserVariables = {"ORVANE_BROWSER_URL=http://127.0.0.1:1", "ORVANE_BROWSER_TOKEN=t"};
    launch.browserPrompt = LaunchPlan::browserPrompt;
    launch.mcpInjection = " --mcp 'x'";
    launch.hookFeed = {.eventsPath = "/tmp/e v", .settingsJson = R"({"a":"it's \"$HOME\""})"};
    return launch;
}

TEST(LaunchPlanTest, flagsReachTheProgramWordForWord) {
    const std::string command = commandOf(full(SessionKind::claude));
    EXPECT_EQ(command, "claude --session-id " + freshID + R"( --settings '{"a":"it'\''s \"$HOME\""}')" +
                           std::string(LaunchPlan::browserPrompt) + " --mcp 'x'");
    const std::string words = outputOfBash(R"(claude() { printf '%s\n' "$@"; }; )" + command);
    const std::string prompt(LaunchPlan::browserPrompt.substr(std::string_view(" --append-system-prompt '").size()));
    EXPECT_EQ(words, "--session-id\n" + freshID + "\n--settings\n{\"a\":\"it's \\\"$HOME\\\"\"}\n" +
                         "--append-system-prompt\n" + prompt.substr(0, prompt.size() - 1) + "\n--mcp\nx\n");
    EXPECT_EQ(commandOf(full(SessionKind::gemini)), "gemini --mcp 'x'");
    EXPECT_EQ(commandOf(full(SessionKind::custom)), "exec zsh -l");
}

TEST(LaunchPlanTest, ordersAndCleansTheEnvironment) {
    LaunchRequest launch = full(SessionKind::claude);
    launch.baseEnvironment = {"TERM=xterm-256color", "CLAUDECODE=1", "LANG=C", "CLAUDECODEX=1"};
    launch.loginEnvironment = {
        "PATH=/x", "TERM=dumb", "PATH=/y", "CLAUDE_CODE_SSE_PORT=7", "EDITOR=vi", "CLAUDE_CODE_HIDE_SETTINGS_HINT=0"};
    EXPECT_EQ(LaunchPlan::compose(launch)->environment,
              (EnvironmentEntries{"TERM=xterm-256color", "LANG=en_US.UTF-8", "CLAUDECODEX=1",
                                  "ORVANE_BROWSER_URL=http://127.0.0.1:1", "ORVANE_BROWSER_TOKEN=t",
                                  "ORVANE_HOOK_EVENTS=/tmp/e v", "CLAUDE_CODE_HIDE_SETTINGS_HINT=1", "PATH=/x",
                                  "EDITOR=vi"}));

    launch.kind = SessionKind::service;
    launch.loginEnvironment.reset();
    launch.locale = "C.UTF-8";
    // A host that was started in a session has the mark of that one.
    launch.baseEnvironment.emplace_back("ORVANE_SESSION=other");
    launch.sessionID = "mine";
    EXPECT_EQ(LaunchPlan::compose(launch)->environment,
              (EnvironmentEntries{"TERM=xterm-256color", "LANG=C.UTF-8", "CLAUDECODEX=1", "ORVANE_SESSION=mine"}));
}

TEST(LaunchPlanTest, withoutACaptureTheShellBuildsItsOwnEnvironment) {
    LaunchRequest launch = request(SessionKind::codex);
    launch.loginEnvironment.reset();
    EXPECT_EQ(LaunchPlan::compose(launch)->arguments, (std::vector<std::string>{"-l", "-i", "-c", "codex"}));
    launch.toolFolders = {"/t"};
    EXPECT_TRUE(commandOf(launch).starts_with("for ov_d in '/t'; do "));
    EXPECT_TRUE(commandOf(launch).ends_with("unset ov_d; codex"));
    launch.kind = SessionKind::shell;
    EXPECT_EQ(LaunchPlan::compose(launch)->arguments, std::vector<std::string>{"-l"});
}

TEST(LaunchPlanTest, refusesACommandThatNoProcessCanBeGiven) {
    using Error = LaunchPlan::Error;
    const std::string longest(LaunchPlan::maximumCommandSize, 'x');
    EXPECT_EQ(commandOf(request(SessionKind::custom, longest)), longest);
    EXPECT_EQ(LaunchPlan::compose(request(SessionKind::custom, longest + "x")).error(), Error::commandTooLong);
    EXPECT_EQ(LaunchPlan::compose(request(SessionKind::custom, std::string("a\0b", 3))).error(), Error::commandHasNul);
}

}  // namespace
}  // namespace orvane
