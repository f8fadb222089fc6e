#include "Orvane/Agents/ToolsManager.h"

#include <gmock/gmock.h>

#include <filesystem>

#include "Platform/Files.h"
#include "Platform/ManualMainLoop.h"
#include "Support/TemporaryFolder.h"

namespace orvane {
namespace {

using ::testing::ElementsAre;
using ::testing::EndsWith;
using ::testing::HasSubstr;
using Failure = ToolsManager::Failure;
using Reason = Failure::Reason;
using Result = std::expected<void, Failure>;

ToolState installed(std::optional<std::string> version) {
    return {.value = ToolState::Installed{.version = std::move(version)}};
}

const ToolState missing{.value = ToolState::Missing{}};
const ToolState installing{.value = ToolState::Installing{}};
const AgentTool& claude = agentTools[0];
const AgentTool& codex = agentTools[1];

/// A home folder whose shell finds what stands in its folder "bin" and nothing else.
struct ToolsManagerTest : testing::Test {
    ToolsManagerTest() {
        for (const char* name : {"bin", ".codex"})
            std::filesystem::create_directory(folder.path(name));
        for (const char* name : {"head", "sleep", "chmod"})
            std::filesystem::create_symlink(std::string("/usr/bin/") + name, folder.path("bin/") + name);
        setProfile("");
    }

    void program(const std::string& name, const std::string& script) const {
        const std::string path = folder.write(name, "#!/bin/sh\n" + script + "\n");
        std::filesystem::permissions(path, std::filesystem::perms::owner_all);
    }
    void setProfile(const std::string& profile) const {
        program("shell", "PATH=" + folder.path("bin") + "\n" + profile + "\nfor last; do :; done\neval \"$last\"");
    }
    /// An npm that makes codex.
    void npm(const std::string& script) const { program("bin/npm", script); }
    std::string makingCodex(const std::string& version) const {
        const std::string path = folder.path("bin/codex");
        return "printf '#!/bin/sh\\necho " + version + "\\n' > " + path + "; chmod +x " + path;
    }

    void refresh() {
        bool isDone = false;
        tools->refresh([&] { isDone = true; });
        EXPECT_TRUE(loop.runUntil([&] { return isDone; }));
    }
    std::shared_ptr<std::optional<Result>> begin(const AgentTool& tool,
                                                 ToolsManager::Order order = ToolsManager::Order::install) {
        auto result = std::make_shared<std::optional<Result>>();
        tools->install(tool, order, [result](const Result& its) { *result = its; });
        EXPECT_FALSE(result->has_value()) << "told inside the call";
        return result;
    }
    Result install(const AgentTool& tool, ToolsManager::Order order = ToolsManager::Order::install) {
        const auto result = begin(tool, order);
        EXPECT_TRUE(loop.runUntil([&] { return result->has_value(); }));
        return result->value_or(Result());
    }
    /// Where nobody waits for orphans they stay as zombies.
    static bool isRunning(const std::string& pid) {
        const auto stat = readWholeFile("/proc/" + pid + "/stat", 10'000);
        return stat && !stat->contains(") Z");
    }
    std::string pidIn(const std::string& name) const {
        const std::string text = folder.read(name);
        return text.substr(0, text.find('\n'));
    }
    bool exists(const std::string& name) const { return std::filesystem::exists(folder.path(name)); }

    TemporaryFolder folder;
    ManualMainLoop loop;
    BackgroundPool pool{1};
    ShellSetup setup{.environment = {{"HOME", folder.path()}, {"GEMINI_API_KEY", "x"}},
                     .shell = folder.path("shell"),
                     .locale = "C.UTF-8",
                     .toolFolders = {}};
    ShellSetup noShell{.environment = {}, .shell = folder.path("none"), .locale = {}, .toolFolders = {}};
    LoginCapture login{loop, noShell};
    std::shared_ptr<ToolsManager> tools = std::make_shared<ToolsManager>(
        ToolsManager::Services{.loop = loop, .pool = pool, .l10n = {}, .shell = setup, .loginCapture = login});
    std::vector<std::string> printed;
    Registration printing =
        tools->installPrinted.subscribe([this](const std::string& line) { printed.push_back(line); });
};

TEST_F(ToolsManagerTest, tellsWhatTheShellFindsAndTheFilesShow) {
    program("bin/claude", "echo '2.1 (Claude Code)'");
    npm("");
    // A place of tools that the profile does not know.
    std::filesystem::create_directories(folder.path(".local/bin"));
    program(".local/bin/gemini", "echo 0.9");
    folder.write(".codex/auth.json", "{}");
    int changes = 0;
    const auto changed = tools->changed.subscribe([&] { ++changes; });
    int answers = 0;
    for (int count = 0; count < 2; ++count)
        tools->refresh([&] { ++answers; });
    EXPECT_EQ(tools->states().at("claude"), ToolState{.value = ToolState::Checking{}});
    ASSERT_TRUE(loop.runUntil([&] { return answers == 2; }));
    EXPECT_EQ(tools->states(),
              (std::map<std::string, ToolState>{
                  {"claude", installed("2.1 (Claude Code)")}, {"codex", missing}, {"gemini", installed("0.9")}}));
    EXPECT_EQ(tools->authStates(), (std::map<std::string, AuthState>{{"claude", AuthState::notConnected},
                                                                     {"codex", AuthState::connected},
                                                                     {"gemini", AuthState::connected}}));
    EXPECT_EQ(tools->binaryPaths(), (std::map<std::string, std::string>{{"claude", folder.path("bin/claude")},
                                                                        {"gemini", folder.path(".local/bin/gemini")}}));
    EXPECT_EQ(tools->npmAvailable(), true);
    EXPECT_TRUE(tools->isComplete());
    EXPECT_THAT(setup.toolFolders, testing::Contains(folder.path(".local/bin"))) << "launches need it too";
    loop.runPosted();
    EXPECT_GE(changes, 2);
    std::filesystem::remove(folder.path("bin/claude"));
    refresh();
    EXPECT_EQ(tools->states().at("claude"), missing);
    EXPECT_FALSE(tools->binaryPaths().contains("claude"));
}

TEST_F(ToolsManagerTest, aToolThatHangsKeepsNothingFromTheOthers) {
    program("bin/claude", "echo 1");
    program("bin/codex", "echo $$ > " + folder.path("hanging") + "; exec sleep 600");
    npm("");
    bool isDone = false;
    tools->refresh([&] { isDone = true; });
    ASSERT_TRUE(loop.runUntil([&] { return !folder.read("hanging").empty(); }));
    // The other's version may still be on its way; its word stays in the pipe.
    loop.advance(LoginShellRun::answerLimit);
    ASSERT_TRUE(loop.runUntil([&] { return isDone; }));
    EXPECT_TRUE(tools->states().at("claude").isInstalled());
    EXPECT_EQ(tools->states().at("codex"), installed({}));
    EXPECT_EQ(tools->npmAvailable(), true);
    EXPECT_FALSE(tools->isComplete());
    EXPECT_TRUE(loop.runUntil([&] { return !isRunning(pidIn("hanging")); })) << "it is left behind";
}

TEST_F(ToolsManagerTest, aShellThatHangsOrIsNotThereIsToldAndInstallsNothing) {
    setProfile("echo > " + folder.path("started") + "; exec sleep 600");
    const auto silent = begin(codex);
    ASSERT_TRUE(loop.runUntil([&] { return exists("started"); }));
    loop.advance(LoginShellRun::answerLimit);
    ASSERT_TRUE(loop.runUntil([&] { return silent->has_value(); }));
    EXPECT_EQ(silent->value().error(), Failure{.reason = Reason::shellSilent});
    EXPECT_FALSE(tools->isComplete());
    EXPECT_EQ(tools->npmAvailable(), std::nullopt);
    EXPECT_EQ(tools->states().at("codex"), missing);

    setup.shell = folder.path("no-such-shell");
    const Result impossible = install(codex);
    ASSERT_FALSE(impossible);
    EXPECT_EQ(impossible.error().reason, Reason::notStarted);
    EXPECT_THAT(impossible.error().detail, HasSubstr("no-such-shell"));
    EXPECT_THAT(tools->installLog(), HasSubstr("could not be started: start " + folder.path("no-such-shell")));
    EXPECT_EQ(tools->states().at("codex"), missing);
}

TEST_F(ToolsManagerTest, anInstallationShowsItsLinesAndEndsWithTheToolItFinds) {
    npm("echo \"$@\"; printf '10%%\\r50%%\\r100%%\\n'; printf '\\033[32mgreen\\033[0m \\377\\n'; echo oops >&2; " +
        makingCodex("3.0") + "; printf last");
    EXPECT_TRUE(install(codex));
    EXPECT_THAT(printed, ElementsAre("install -g @openai/codex", "100%", "green \xef\xbf\xbd", "oops", "last"));
    EXPECT_THAT(tools->installLog(), EndsWith("oops\nlast\nThe installation is done.\n"));
    EXPECT_EQ(tools->states().at("codex"), installed("3.0"));
    EXPECT_EQ(tools->binaryPaths().at("codex"), folder.path("bin/codex"));

    npm(makingCodex("3.1"));
    EXPECT_TRUE(install(codex, ToolsManager::Order::update));
    EXPECT_EQ(tools->states().at("codex"), installed("3.1"));
    EXPECT_EQ(tools->currentInstallLog(), "The installation is done.\n");
    EXPECT_EQ(install(claude, ToolsManager::Order::update), Result(std::unexpected(Failure{Reason::notInstalled})));
}

TEST_F(ToolsManagerTest, anInstallationThatBringsNothingHasFailed) {
    npm("echo trouble; sleep 600 & echo $! > " + folder.path("left") + "; exit 3");
    EXPECT_EQ(install(codex), Result(std::unexpected(Failure{Reason::failed})));
    EXPECT_TRUE(loop.runUntil([&] { return !isRunning(pidIn("left")); })) << "what it started is left behind";
    EXPECT_EQ(tools->installLog(), "trouble\nThe installation failed.\n");
    EXPECT_EQ(tools->states().at("codex"), missing);
    npm("echo fine");
    EXPECT_EQ(install(codex), Result(std::unexpected(Failure{Reason::notFound})));
    EXPECT_EQ(tools->states().at("codex"), missing);
    std::filesystem::remove(folder.path("bin/npm"));
    tools->refresh();
    EXPECT_EQ(install(codex), Result(std::unexpected(Failure{Reason::npmMissing})));
    npm(makingCodex("1"));  // somebody has heeded the word
    EXPECT_TRUE(install(codex));
}

TEST_F(ToolsManagerTest, oneInstallationAtATimeWhichOthersMayFollow) {
    npm("echo begun; until [ -e " + folder.path("go") + " ]; do sleep 0.01; done; " + makingCodex("1"));
    const auto first = begin(codex);
    ASSERT_TRUE(loop.runUntil([&] { return !printed.empty(); }));
    EXPECT_EQ(tools->toolInWork(), &codex);
    EXPECT_EQ(tools->currentInstallLog(), "begun\n");
    EXPECT_EQ(install(claude), Result(std::unexpected(Failure{.reason = Reason::otherRunning, .detail = "Codex"})));
    const auto second = begin(codex);

    // What a refresh finds is older than what the installation brings.
    program("bin/claude", "echo > " + folder.path("looked") + "; exec sleep 600");
    bool isRefreshed = false;
    tools->refresh([&] { isRefreshed = true; });
    EXPECT_EQ(tools->states().at("codex"), installing);
    ASSERT_TRUE(loop.runUntil([&] { return exists("looked"); }));
    folder.write("go", "");
    ASSERT_TRUE(loop.runUntil([&] { return first->has_value() && second->has_value(); }));
    EXPECT_TRUE(first->value() && second->value());
    EXPECT_EQ(tools->toolInWork(), nullptr);
    loop.advance(LoginShellRun::answerLimit);
    ASSERT_TRUE(loop.runUntil([&] { return isRefreshed; }));
    EXPECT_EQ(tools->states().at("codex"), installed("1"));
    EXPECT_EQ(printed.size(), 1U) << "the command ran once";
}

TEST_F(ToolsManagerTest, anInstallationEndsWithTheManager) {
    npm("echo $$ > " + folder.path("npm.pid") + "; sleep 600 & echo $! > " + folder.path("below.pid") + "; wait");
    const auto result = begin(codex);
    ASSERT_TRUE(loop.runUntil([&] { return !folder.read("below.pid").empty(); }));
    loop.advance(std::chrono::hours(5));  // a slow network is no reason to give up
    EXPECT_TRUE(isRunning(pidIn("below.pid")));
    tools.reset();
    EXPECT_TRUE(loop.runUntil([&] { return !isRunning(pidIn("npm.pid")) && !isRunning(pidIn("below.pid")); }));
    EXPECT_FALSE(result->has_value());
}

TEST(InstallLogTest, keepsTheLatestLines) {
    InstallLog log;
    const std::string line(999, 'x');
    for (int count = 0; count < 5000; ++count) {
        if (count == 4900) log.beginRun();
        log.append(line);
        ASSERT_LE(log.text().size(), InstallLog::maximumSizeInBytes);
    }
    EXPECT_GE(log.text().size(), InstallLog::maximumSizeInBytes / 2);
    EXPECT_EQ(log.text().size() % 1000, 0U) << "lines stay whole";
    EXPECT_EQ(log.currentRun().size(), 100U * 1000);
    log.append(std::string(InstallLog::maximumSizeInBytes * 2, 'y'));
    log.append("end");
    EXPECT_THAT(log.text(), EndsWith("end\n"));
    EXPECT_LE(log.text().size(), InstallLog::maximumSizeInBytes);
}

}  // namespace
}  // namespace orvane
