#include <gtest/gtest.h>
#include <sys/stat.h>

#include <fstream>
#include <set>

#include "OrvaneCore/Agents/ToolAuth.h"
#include "OrvaneCore/Agents/ToolsReport.h"
#include "Support/ShellRun.h"
#include "Support/Table.h"
#include "Support/TemporaryFolder.h"

namespace orvane {
namespace {

ToolState installed(std::optional<std::string> version) {
    return {.value = ToolState::Installed{.version = std::move(version)}};
}

const ToolState missing = {.value = ToolState::Missing{}};

void writeProgram(const std::string& path, const std::string& script) {
    std::ofstream(path) << "#!/bin/sh\n" << script;
    chmod(path.c_str(), 0755);
}

TEST(ToolsReportTest, readsWhatAShellFinds) {
    const TemporaryFolder folder;
    writeProgram(folder.path("claude"), "echo '2.1.3 (Claude Code)'; echo more");
    writeProgram(folder.path("gemini"), "echo broken >&2; exit 1");
    writeProgram(folder.path("npm"), "echo '10::1'");
    const std::string script =
        "PATH=/usr/bin:/bin; gemini() { command gemini; }; printf banner; " + ToolsReport::script({folder.path("")});
    const ToolsReport report = ToolsReport::parse(outputOfBash(script));
    EXPECT_EQ(report.states.at("claude"), installed("2.1.3 (Claude Code)"));
    EXPECT_EQ(report.states.at("gemini"), installed(std::nullopt));
    EXPECT_TRUE(report.binaryPaths.at("claude").ends_with("/claude"));
    EXPECT_FALSE(report.binaryPaths.contains("gemini")) << "a function has no path";
    EXPECT_EQ(report.npmAvailable, true);
    const auto alone = [&](const AgentTool& tool) {
        return ToolsReport::parse(outputOfBash("PATH=/usr/bin:/bin; " + ToolsReport::script(tool, {folder.path("")})));
    };
    EXPECT_EQ(alone(agentTools[0]).states.at("claude"), installed("2.1.3 (Claude Code)"));
    EXPECT_TRUE(alone(agentTools[0]).binaryPaths.at("claude").ends_with("/claude"));
    EXPECT_EQ(alone(agentTools[1]).states.at("codex"), missing);
    EXPECT_EQ(outputOfBash("PATH=" + folder.path("") + ":/usr/bin:/bin; " + ToolsReport::versionScript(agentTools[0])),
              "2.1.3 (Claude Code)\n");
}

TEST(ToolsReportTest, readsOutputThatIsCutOrOdd) {
    const ToolsReport none = ToolsReport::parse("");
    EXPECT_EQ(none.states,
              (std::map<std::string, ToolState>{{"claude", missing}, {"codex", missing}, {"gemini", missing}}));
    EXPECT_EQ(none.npmAvailable, std::nullopt);

    const ToolsReport odd = ToolsReport::parse(
        "$ "
        "OV::claude::present::/a::b/claude\r\nOV::codex::missing\nOV::npm::missing\nOV::other::present::/x\nOV::\nOV\n"
        "OV::codex::version::1\nOV::gemini::present::alias gemini='x'\nOV::claude::version::\x1b[1m1::2\r\nOV::gem");
    EXPECT_EQ(odd.states, (std::map<std::string, ToolState>{
                              {"claude", installed("[1m1::2")}, {"codex", missing}, {"gemini", installed({})}}));
    EXPECT_EQ(odd.binaryPaths, (std::map<std::string, std::string>{{"claude", "/a::b/claude"}}));
    EXPECT_EQ(odd.npmAvailable, false);
    EXPECT_EQ(ToolsReport::version(std::string(100, 'x'))->size(), ToolsReport::maximumVersionLength + 2);  // "…"
    EXPECT_EQ(ToolsReport::version(" \n1"), std::nullopt);
}

TEST(ToolAuthTest, oneSignOfTheToolIsEnough) {
    const auto connected = [](const std::set<std::string>& there, ToolAuth::Secret secret = ToolAuth::Secret::absent) {
        const auto isThere = [&](const std::string& name) { return there.contains(name); };
        std::string tools;
        for (const AgentTool& tool : agentTools) {
            const auto state = ToolAuth::state(
                tool.id, {.home = "/h", .fileExists = isThere, .isVariableSet = isThere, .secret = secret});
            if (state == AuthState::connected) tools += tool.id;
        }
        return tools;
    };
    EXPECT_EQ(connected({}), "");
    EXPECT_EQ(connected({}, ToolAuth::Secret::present), "claude");
    for (const auto& [sign, tools] : table<2>(R"(
        /h/.claude/.credentials.json | claude; ANTHROPIC_API_KEY | claude
        /h/.codex/auth.json | codex; OPENAI_API_KEY | codex; /h/.claude.json |
        /h/.gemini/oauth_creds.json | gemini; /h/.gemini/google_accounts.json | gemini
        GEMINI_API_KEY | gemini; GOOGLE_API_KEY | gemini)"))
        EXPECT_EQ(connected({sign}), tools) << sign;
}

}  // namespace
}  // namespace orvane
