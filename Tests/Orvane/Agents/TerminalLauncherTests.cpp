// Sessions as real shells start them, with scripts in the place of the agents' programs.

#include "Orvane/Agents/TerminalLauncher.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "Orvane/Agents/SessionController.h"
#include "OrvaneCore/Support/ShellText.h"
#include "OrvaneCore/Support/Text.h"
#include "Platform/ManualMainLoop.h"
#include "Support/TemporaryFolder.h"
#include "TerminalEmulator/HeadlessTerminal.h"

namespace orvane {
namespace {

using ::testing::ElementsAreArray;

/// Everything that a shell gives a meaning to, but what parts a PATH or a path.
const std::string hostile = "a b'c\"d\ne$HOME`f`\\g*é漢";
const std::string settings = R"({"a":"it's \"$HOME\" `x`"})";

/// What a program was started with.
struct Report {
    std::string folder;
    std::vector<std::string> arguments;
    EnvironmentEntries environment;
};

class EverythingAdded final : public LaunchSupport {
 public:
    LaunchAdditions additions(const SessionController& /*session*/) override {
        return {.browserVariables = {"ORVANE_BROWSER_URL=http://127.0.0.1:1", "ORVANE_BROWSER_TOKEN=" + hostile},
                .browserPrompt = std::string(LaunchPlan::browserPrompt),
                .mcpInjection = " --mcp " + shellQuoted(hostile),
                .hookFeed = LaunchHookFeed{.eventsPath = "/tmp/" + hostile, .settingsJson = settings}};
    }
};

struct TerminalLauncherTest : testing::Test {
    TerminalLauncherTest() {
        std::filesystem::create_directories(home + "/tools");
        std::filesystem::create_directories(home + "/.local/bin");
        const std::string profile =
            "echo Welcome; echo to you >&2\nexport LOGIN_ONLY=\"it's mine\" PATH=\"$HOME/tools:$PATH\"\n";
        for (const char* name : {".bash_profile", ".zprofile"})
            folder.write(hostile + "/" + name, profile);
        folder.write(hostile + "/.zshrc", "");
        for (const char* name : {"tools/claude", "tools/gemini", "tools/own", ".local/bin/codex"}) {
            script(hostile + "/" + name, R"({ printf '%s\0' "$PWD" $# "$@"; env -0; } > part && mv part report)");
        }
    }
    ~TerminalLauncherTest() override {
        for (const auto& session : sessions) {
            session->terminate();
            session->kill();
        }
    }

    std::string script(const std::string& name, const std::string& text) {
        const std::string path = folder.write(name, "#!/bin/sh\n" + text + "\n");
        std::filesystem::permissions(path, std::filesystem::perms::owner_all);
        return path;
    }

    TerminalLauncher& launcherWith(const std::string& shell) {
        const Environment environment{
            {"HOME", home}, {"PATH", "/usr/bin:/bin"}, {"CLAUDECODE", "1"}, {"CLAUDE_CODE_SSE_PORT", "7"}};
        setups.push_back(std::make_unique<ShellSetup>(ShellSetup::of(environment)));
        setups.back()->shell = shell;
        logins.push_back(std::make_unique<LoginCapture>(loop, *setups.back()));
        launchers.push_back(std::make_unique<TerminalLauncher>(TerminalLauncher::Setup{
            .loop = loop, .support = support, .shell = *setups.back(), .login = *logins.back()}));
        return *launchers.back();
    }

    /// A session whose folder no other has.
    SessionController& launch(TerminalLauncher& launcher, SessionKind kind, std::optional<std::string> command,
                              std::optional<AgentSpec> spec = {}) {
        const std::string path = folder.path(std::to_string(sessions.size()) + hostile);
        std::filesystem::create_directory(path);
        sessions.push_back(std::make_shared<SessionController>(
            SessionController::Identity{
                .kind = kind, .command = std::move(command), .projectPath = path, .agentSpec = std::move(spec)},
            SessionController::Appearance{}, surroundings));
        sessions.back()->launch(launcher);
        return *sessions.back();
    }

    Report report(const SessionController& session) {
        const std::string path = session.identity().projectPath + "/report";
        if (!loop.runUntil([&] { return std::filesystem::exists(path); })) {
            ADD_FAILURE() << "no program: " << session.terminal()->terminal.getBufferAsData();
            return {};
        }
        std::vector<std::string> words;
        std::string bytes = folder.read(path.substr(folder.path().size() + 1));
        for (std::size_t end = 0; (end = bytes.find('\0')) != std::string::npos; bytes.erase(0, end + 1))
            words.push_back(bytes.substr(0, end));
        const auto arguments = words.begin() + 2;
        const auto environment = arguments + std::stol(words.at(1));
        return {
            .folder = words.front(), .arguments = {arguments, environment}, .environment = {environment, words.end()}};
    }

    TemporaryFolder folder;
    const std::string home = folder.path(hostile);
    ManualMainLoop loop;
    EverythingAdded support;
    const SessionController::Surroundings surroundings{.loop = loop, .l10n = {}, .home = home, .log = {}};
    std::vector<std::unique_ptr<ShellSetup>> setups;
    std::vector<std::unique_ptr<LoginCapture>> logins;
    std::vector<std::unique_ptr<TerminalLauncher>> launchers;
    std::vector<std::shared_ptr<SessionController>> sessions;
};

enum class Login { pending, captured };

struct RealShellTest : TerminalLauncherTest, testing::WithParamInterface<std::tuple<const char*, Login>> {};

INSTANTIATE_TEST_SUITE_P(Shells, RealShellTest,
                         testing::Combine(testing::Values("/bin/bash", "/bin/zsh"),
                                          testing::Values(Login::pending, Login::captured)));

struct Row {
    SessionKind kind;
    std::optional<std::string> command;
    std::optional<AgentSpec> spec;
    std::string typed;
    std::vector<std::string> arguments;  ///< "ID" stands for the transcript's
};

std::vector<Row> rows() {
    using enum SessionKind;
    const std::string_view flag = " --append-system-prompt '";
    const std::string_view quoted = LaunchPlan::browserPrompt.substr(flag.size());
    const std::string prompt(quoted.substr(0, quoted.size() - 1));
    const std::vector<std::string> added = {"--settings", settings, "--append-system-prompt", prompt, "--mcp", hostile};
    const auto with = [&](std::vector<std::string> first) {
        first.insert(first.end(), added.begin(), added.end());
        return first;
    };
    const std::string typed = "own 'typed in'\r";
    const AgentSpec spec{.name = "Mine", .command = "own \"$LOGIN_ONLY\" 'two words'"};
    return {
        {.kind = shell, .typed = typed, .arguments = {"typed in"}},
        {.kind = service, .typed = typed, .arguments = {"typed in"}},
        {.kind = service, .command = "cd . && own serve $((1+1))", .arguments = {"serve", "2"}},
        {.kind = claude, .arguments = with({"--session-id", "ID"})},
        {.kind = claude, .command = "claude --resume 'a b'", .arguments = with({"--resume", "a b"})},
        {.kind = claude,
         .command = "claude --model opus",
         .arguments = with({"--model", "opus", "--session-id", "ID"})},
        {.kind = codex, .arguments = {"--mcp", hostile}},
        {.kind = gemini, .command = "gemini --yolo", .arguments = {"--yolo", "--mcp", hostile}},
        {.kind = custom, .command = "own " + shellQuoted(hostile), .arguments = {hostile}},
        {.kind = custom, .spec = spec, .arguments = {"it's mine", "two words"}},
    };
}

void expectEnvironment(const Report& report, const SessionController& session, const std::string& home) {
    const SessionKind kind = session.identity().kind;
    const auto expect = [&](std::string_view name, std::optional<std::string> value) {
        EXPECT_EQ(EnvironmentList::value(report.environment, name), value) << name;
    };
    const auto onlyIf = [](bool holds, std::string value) {
        return holds ? std::optional(std::move(value)) : std::nullopt;
    };
    expect("TERM", "xterm-256color");
    expect("COLORTERM", "truecolor");
    expect("HOME", home);
    expect("LOGIN_ONLY", "it's mine");
    expect("ORVANE_SESSION", session.id().lowerText());
    expect("CLAUDECODE", std::nullopt);
    expect("CLAUDE_CODE_SSE_PORT", std::nullopt);
    expect("ORVANE_BROWSER_URL", onlyIf(isAgent(kind), "http://127.0.0.1:1"));
    expect("ORVANE_BROWSER_TOKEN", onlyIf(isAgent(kind), hostile));
    expect("ORVANE_HOOK_EVENTS", onlyIf(kind == SessionKind::claude, "/tmp/" + hostile));
    expect("CLAUDE_CODE_HIDE_SETTINGS_HINT", onlyIf(kind == SessionKind::claude, "1"));
    EXPECT_TRUE(EnvironmentList::value(report.environment, "LANG").value_or("").ends_with(".UTF-8"));
}

TEST_P(RealShellTest, startsEachKindWithItsWordsInItsFolderAndEnvironment) {
    const auto [shell, login] = GetParam();
    TerminalLauncher& launcher = launcherWith(shell);
    if (login == Login::captured) {
        ASSERT_TRUE(loop.runUntil([&] { return logins.back()->entries().has_value(); }));
    }
    const std::vector<Row> all = rows();
    for (const Row& row : all) {  // all at once, for each takes its time
        SessionController& session = launch(launcher, row.kind, row.command, row.spec);
        ASSERT_FALSE(session.launchFailure());
        if (!row.typed.empty()) session.terminal()->process.send(row.typed);
    }
    for (std::size_t index = 0; index < all.size(); ++index) {
        const Row& row = all[index];
        const SessionController& session = *sessions[index];
        SCOPED_TRACE(row.command.value_or(std::string(rawValue(row.kind))));
        std::vector<std::string> expected = row.arguments;
        std::ranges::replace(expected, "ID", session.forcedTranscriptID().value_or("none"));
        EXPECT_EQ(session.forcedTranscriptID().has_value(), expected != row.arguments);
        const Report seen = report(session);
        EXPECT_EQ(seen.folder, session.identity().projectPath);
        EXPECT_THAT(seen.arguments, ElementsAreArray(expected));
        expectEnvironment(seen, session, home);
    }
    // Neither the profile nor the terminal tells of this folder.
    const std::string path = ":" + EnvironmentList::value(report(*sessions[6]).environment, "PATH").value_or("") + ":";
    EXPECT_EQ(path.find(":" + home + "/.local/bin:"), path.rfind(":" + home + "/.local/bin:"));
}

TEST_F(TerminalLauncherTest, aLoginShellThatFailsOrHangsHoldsNoSessionUp) {
    for (const char* fault : {"exit 1", "exec sleep 600"}) {
        const std::string shell =
            script("bash", std::string("for last; do :; done; case $last in *OV-ENV*) : > \"${0%/*}/asked\"; ") +
                               fault + ";; esac; exec /bin/bash \"$@\"");
        TerminalLauncher& launcher = launcherWith(shell);
        ASSERT_TRUE(loop.runUntil([&] { return std::filesystem::exists(folder.path("asked")); }));
        const Report seen = report(launch(launcher, SessionKind::codex, "codex 'x y'"));
        EXPECT_EQ(seen.arguments.front(), "x y") << fault;
        EXPECT_FALSE(logins.back()->entries().has_value());
        std::filesystem::remove(folder.path("asked"));
        sessions.back()->terminate();
    }
}

TEST_F(TerminalLauncherTest, tellsWhyNothingWasStarted) {
    TerminalLauncher& launcher = launcherWith("/bin/bash");
    using enum LaunchFailure::Reason;
    const auto reasonOf = [&](const std::string& command, const std::string& path) {
        SessionController session({.kind = SessionKind::custom, .command = command, .projectPath = path}, {},
                                  surroundings);
        session.launch(launcher);
        EXPECT_EQ(session.status(), (SessionStatus{SessionStatus::Failed{-1}}));
        return session.launchFailure().value_or(LaunchFailure{.reason = notStarted});
    };
    EXPECT_EQ(reasonOf(std::string("a\0b", 3), home).reason, commandHasNul);
    EXPECT_EQ(reasonOf(std::string(200'000, 'x'), home).reason, commandTooLong);
    for (const char* name : {"missing", "file"}) {
        folder.write("file", "");
        EXPECT_EQ(reasonOf("true", folder.path(name)).reason, folderUnusable) << name;
    }
    EXPECT_EQ(reasonOf("true", folder.path("missing")).error->number, ENOENT);
}

}  // namespace
}  // namespace orvane
