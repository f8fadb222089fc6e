// What scripted agents do besides showing screens: keys too early, files, hooks, exit statuses, mistakes of a scenario.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <csignal>
#include <filesystem>
#include <sstream>

#include "Agents/AgentOnTerminal.h"
#include "Support/TemporaryFolder.h"

namespace orvane::testing {
namespace {

using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;

class ScriptedAgent : public ::testing::Test {
 protected:
    AgentOnTerminal::Start start(const std::string& scenario, const std::string& settings = "") const {
        return {.scenario = scenario, .arguments = {}, .home = folder.path(), .settings = settings};
    }
    AgentOnTerminal::Start known(const std::string& name, const std::string& settings = "") const {
        return start(scenarioPath(name), settings);
    }
    std::string scenario(const std::string& text) const { return folder.write("test.agent", text); }
    std::string statusFile(const AgentOnTerminal& agent) const {
        return folder.read(".claude/sessions/" + std::to_string(agent.pid()) + ".json");
    }

    TemporaryFolder folder;
};

TEST_F(ScriptedAgent, AReturnThatComesTooEarlyIsLost) {
    // Early for as long as the test runs: no time is measured.
    AgentOnTerminal dialog(known("claude.agent", "guard=60000"));
    ASSERT_TRUE(dialog.shows("for shortcuts"));
    dialog.type("fake:bash x\r");
    ASSERT_TRUE(dialog.shows("❯ 1. Yes"));
    dialog.type("\r\x1b[B");
    ASSERT_TRUE(dialog.shows("❯ 2. Yes"));  // the key after it counts
    dialog.type("1");                       // and so does a digit
    EXPECT_TRUE(dialog.shows("Ran 1 shell command"));

    AgentOnTerminal starting(known("codex.agent", "start-delay=60000"));
    ASSERT_TRUE(starting.shows("? for shortcuts"));
    starting.type("hello\r");
    ASSERT_TRUE(starting.shows("› hello"));
    starting.type(" again");
    EXPECT_TRUE(starting.shows("› hello again"));

    AgentOnTerminal deaf(known("gemini.agent", "start-delay=60000"));
    ASSERT_TRUE(deaf.shows("? for shortcuts"));
    deaf.type("hello\r");
    deaf.signal(SIGTERM);
    EXPECT_EQ(deaf.end(), 128 + SIGTERM);
    EXPECT_THAT(deaf.bytes(), Not(HasSubstr("hello")));
}

TEST_F(ScriptedAgent, APasteIsShownAsTheAgentShowsIt) {
    const std::string lines = "\x1b[200~one\rtwo\rthree\rfour\rfive\rsix\x1b[201~";
    const struct {
        const char* agent;
        std::string pasted;
        const char* shown;
    } cases[] = {
        {"claude.agent", lines, "[Pasted text #1 +5 lines]"},
        {"claude.agent", "\x1b[200~one\rtwo\x1b[201~", "❯\u00a0one\n  two\n"},
        {"codex.agent", "\x1b[200~" + std::string(1200, 'x') + "\x1b[201~", "› [Pasted Content 1200 chars]"},
        {"codex.agent", lines, "› one\n  two\n  three\n  four\n  five\n  six\n"},
        {"gemini.agent", lines, "> [Pasted Text: 6 lines]"},
    };
    for (const auto& each : cases) {
        AgentOnTerminal agent(known(each.agent));
        ASSERT_TRUE(agent.shows("for shortcuts"));
        agent.type(each.pasted);
        EXPECT_TRUE(agent.shows(each.shown)) << each.agent << agent.text();
    }
    // All of it is entered.
    AgentOnTerminal agent(known("claude.agent"));
    ASSERT_TRUE(agent.shows("for shortcuts"));
    agent.type(lines + " end\r");
    ASSERT_TRUE(agent.shows("✻ Worked"));
    const std::string transcripts = ".claude/projects/";
    std::string slug = std::filesystem::canonical(folder.path()).string();
    for (char& byte : slug)
        byte = std::isalnum(static_cast<unsigned char>(byte)) != 0 ? byte : '-';
    EXPECT_THAT(folder.read(transcripts + slug + "/2df76fbb-7230-44cb-90ef-80d9f58749f8.jsonl"),
                HasSubstr(R"("content":"one\ntwo\nthree\nfour\nfive\nsix end")"));
}

TEST_F(ScriptedAgent, ClaudeKeepsItsStatusFileAndRunsItsHooks) {
    AgentOnTerminal agent(known("claude.agent", "guard=0\nhook=cat >> '" + folder.path("hooks") + "'"));
    const auto hasStatus = [&](const std::string& status) {
        return agent.until(
            [&] { return statusFile(agent).find("\"status\":\"" + status + "\"") != std::string::npos; });
    };
    EXPECT_TRUE(hasStatus("idle"));
    agent.type("fake:quiet \"x\"\r");
    EXPECT_TRUE(agent.shows("esc to interrupt") && hasStatus("busy"));
    agent.signal(SIGUSR1);
    ASSERT_TRUE(agent.shows("Silence is over."));
    EXPECT_TRUE(hasStatus("idle"));
    agent.type("fake:ask\r");
    ASSERT_TRUE(agent.shows("❯ 1. Red"));
    EXPECT_TRUE(hasStatus("waiting"));
    EXPECT_THAT(statusFile(agent), HasSubstr("input needed"));
    agent.type("\x1b");
    ASSERT_TRUE(agent.shows("declined"));
    agent.type("/exit\r");
    EXPECT_EQ(agent.end(), 0);
    EXPECT_THAT(statusFile(agent), IsEmpty());
    EXPECT_FALSE(agent.terminal().isAlternateBufferActive());
    EXPECT_FALSE(agent.terminal().modes().cursorHidden);
    EXPECT_THAT(agent.text(), HasSubstr("claude --resume"));

    std::string fired;
    std::istringstream hooks(folder.read("hooks"));
    for (std::string line; std::getline(hooks, line);) {
        const std::size_t name = line.find("hook_event_name\":\"") + 18;
        fired += line.substr(name, line.find('"', name) - name) + " ";
    }
    // No Stop follows a refusal.
    EXPECT_EQ(fired, "SessionStart UserPromptSubmit Stop UserPromptSubmit PreToolUse PermissionRequest SessionEnd ");
    EXPECT_THAT(folder.read("hooks"), HasSubstr(R"("prompt":"fake:quiet \"x\"")"));
}

TEST_F(ScriptedAgent, EndsAsTheRealOnesDo) {
    const struct {
        const char* agent;
        std::vector<std::string> arguments;
        const char* wait;
        std::string keys;
        int status;
        const char* last;
    } cases[] = {
        {"claude.agent", {"--version"}, "", "", 0, "2.1.329 (Claude Code)"},
        {"claude.agent", {}, "for shortcuts", "\x03\x03", 0, "claude --resume"},
        {"claude.agent", {"--session-id", "1234"}, "for shortcuts", "/exit\r", 0, "claude --resume 1234"},
        {"claude.agent", {"--permission-mode", "default", "hello there"}, "❯ hello there", "/exit\r", 0, "--resume"},
        {"claude-trust.agent", {}, "Accessing workspace", "\x1b", 1, "Security guide"},
        {"codex.agent", {}, "for shortcuts", "\x03", 0, "codex resume"},
        {"own.agent", {"first"}, "I have heard: first", "bye\r", 0, "own>"},
        {"own.agent", {}, "own>", "fail now\r", 3, "own>"},
        {"gemini.agent", {}, "for shortcuts", "fake:quota\r", 173, "no sandbox"},
    };
    for (const auto& each : cases) {
        auto how = known(each.agent, each.agent == std::string("own.agent") ? "" : "guard=0");
        how.arguments = each.arguments;
        AgentOnTerminal agent(how);
        ASSERT_TRUE(*each.wait == '\0' || agent.shows(each.wait)) << each.agent << agent.text();
        if (!each.keys.empty()) agent.type(each.keys);
        EXPECT_EQ(agent.end(), each.status) << each.agent << agent.text();
        EXPECT_THAT(agent.text(), HasSubstr(each.last)) << each.agent;
    }
}

TEST_F(ScriptedAgent, TakesKeysInEveryEncoding) {
    const auto path = scenario(
        "text keys\n|keys{keys}\nlet keys =\nstate start\n  view keys\n"
        "  on key Ctrl-C\n    let keys = {keys} C\n  on key Escape\n    let keys = {keys} E\n"
        "  on key Shift-Return\n    let keys = {keys} S\n  on key Shift-Tab\n    let keys = {keys} T\n"
        "  on key Up\n    let keys = {keys} U\n  on key é\n    let keys = {keys} é\n  on key a\n    let keys = {keys} "
        "a\n"
        "  on key Paste\n    let keys = {keys} P\n  on key *\n    let keys = {keys} ?\n");
    AgentOnTerminal agent(start(path));
    ASSERT_TRUE(agent.shows("keys"));
    agent.type("\x03\x1b[99;5u\x1b[99;5:3u");             // a release is no key
    agent.type("\x1b[27u\x1b[13;2u\x1b[27;2;13~\x1b[Z");  // modifyOtherKeys too
    agent.type("\x1b[A\x1b[1;1A\xc3\xa9\x1b[97u\x1b[200~\x03\x1b[201~");
    agent.type(
        "\x1b[?62;4c\x1b[?1u\x1b[I\x1b[<0;3;4M\x1b]11;rgb:00/00/00\x1b\\\x1b[?2026;2$y\x1bP1$r0m\x1b\\");  // no keys
    agent.type("\x1b");
    EXPECT_TRUE(agent.shows("keys C C E S S T U U é a P E\n")) << agent.text();
}

TEST_F(ScriptedAgent, DrawsAnewAtAnotherSize) {
    for (const char* name : {"claude.agent", "gemini.agent"}) {
        AgentOnTerminal agent(known(name));
        ASSERT_TRUE(agent.shows("for shortcuts"));
        agent.resize(60, 20);
        EXPECT_TRUE(agent.until([&] {
            const auto rows = agent.screen();
            return std::ranges::count_if(rows, [](const std::string& row) { return row.size() == 60 * 3; }) >= 2;
        })) << agent.text();
    }
}

TEST_F(ScriptedAgent, MistakesOfAScenarioAreToldWithFileAndLine) {
    const struct {
        const char* text;
        const char* message;
    } cases[] = {
        {"", "test.agent:0: there is no state “start”"},
        {"screen left\n", "test.agent:1: “left” is none of: main, alternate"},
        {"state start\n  on key a\n    go away\n", "test.agent:3: there is no state “away”"},
        {"state start\n  view v\n", "test.agent:1: there is no text “v”"},
        {"text v\n|{nothing}\nstate start\n", "test.agent:2: {nothing} has no value"},
        {"text v\n?nothing|x\nstate start\n", "test.agent:2: “nothing” has no value"},
        {"state start : start\n", "test.agent:1: “start” is its own base"},
        {"state start\n  on after soon\n", "test.agent:2: “soon” is no number"},
        {"state start\n  on key a\n    jump\n", "test.agent:3: “jump” is none of"},
        {"state start\n  on key a\n    exit -1\n", "test.agent:3: “-1” is no number"},
        {"|x\n", "test.agent:1: a row stands below"},
        {"include test.agent\n", "includes itself"},
        {"include missing.agent\n", "missing.agent:0: cannot be read"},
        {"state start\n  on enter\n    go start\n", "“start” leads to itself without end"},
        {"state start\n  on enter\n    write /proc/no/such\n", "test.agent:3: /proc/no/such"},
    };
    for (const auto& each : cases) {
        auto how = start(scenario(each.text));
        how.cols = 200;
        AgentOnTerminal agent(how);
        EXPECT_EQ(agent.end(), 2) << each.text;
        EXPECT_THAT(agent.text(), HasSubstr(each.message)) << each.text;
    }
    AgentOnTerminal agent(start(scenario("state start\n"), "nothing=1"));
    EXPECT_EQ(agent.end(), 2);
    EXPECT_THAT(agent.text(), HasSubstr("no variable for “nothing=1”"));
}

}  // namespace
}  // namespace orvane::testing
