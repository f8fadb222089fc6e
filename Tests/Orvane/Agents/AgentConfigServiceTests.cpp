#include "Orvane/Agents/AgentConfigService.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>

#include "Support/TemporaryFolder.h"

namespace orvane {
namespace {

using AgentConfig::ClaudeDefaults;
using AgentConfig::CodexDefaults;

struct AgentConfigServiceTest : testing::Test {
    AgentConfigServiceTest() {
        for (const char* name : {"home/.codex", "home/.claude", "project/.claude"})
            std::filesystem::create_directories(folder.path(name));
    }

    ClaudeDefaults claude() const { return service.claudeDefaults(folder.path("project")); }

    TemporaryFolder folder;
    AgentConfigService service{folder.path("home")};
};

TEST_F(AgentConfigServiceTest, readsWhatStandsInTheFilesNow) {
    EXPECT_EQ(service.codexDefaults(), CodexDefaults());
    EXPECT_EQ(claude(), ClaudeDefaults());
    EXPECT_FALSE(service.hasStatusLine());

    folder.write("home/.codex/config.toml", "model = \"large\"\nsandbox_mode = \"read-only\"\n");
    folder.write("home/.claude/settings.json", R"({"model":"of home","statusLine":{}})");
    EXPECT_EQ(service.codexDefaults(), (CodexDefaults{.model = "large", .sandbox = CodexSandbox::readOnly}));
    EXPECT_EQ(claude().model, "of home");
    EXPECT_TRUE(service.hasStatusLine());

    folder.write("project/.claude/settings.local.json", R"({"effort":"low"})");
    folder.write("project/.claude/settings.json", R"({"model":"of the project"})");
    EXPECT_EQ(claude(), (ClaudeDefaults{.model = std::nullopt, .effort = "low"}));
    folder.write("project/.claude/settings.local.json", "no JSON");
    EXPECT_EQ(claude().model, "of the project");
}

TEST_F(AgentConfigServiceTest, whatIsNoFileOfItsKindIsMissingAndWaitsForNobody) {
    const std::string path = folder.path("project/.claude/settings.local.json");
    folder.write("home/.claude/settings.json", R"({"model":"of home"})");
    const struct {
        const char* what;
        std::function<void()> make;
    } cases[] = {{"pipe", [&] { ASSERT_EQ(mkfifo(path.c_str(), 0600), 0); }},
                 {"device", [&] { std::filesystem::create_symlink("/dev/zero", path); }},
                 {"folder", [&] { std::filesystem::create_directory(path); }},
                 {"loop", [&] { std::filesystem::create_symlink(path, path); }},
                 {"large", [&] {
                      const std::string blanks(AgentConfigService::sizeLimit, ' ');
                      folder.write("project/.claude/settings.local.json", R"({"model":"large"})" + blanks);
                  }}};
    for (const auto& each : cases) {
        each.make();
        EXPECT_EQ(claude().model, "of home") << each.what;
        std::filesystem::remove(path);
    }
    EXPECT_EQ(AgentConfigService("").claudeDefaults(folder.path("project")), ClaudeDefaults());
}

}  // namespace
}  // namespace orvane
