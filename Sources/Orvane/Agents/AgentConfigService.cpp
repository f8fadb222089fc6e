#include "Orvane/Agents/AgentConfigService.h"

#include <array>
#include <optional>
#include <utility>

#include "Platform/Files.h"

namespace orvane {

namespace {

std::optional<std::string> settingsIn(const std::string& path) {
    auto text = readWholeFile(path, AgentConfigService::sizeLimit);
    return text ? std::optional(*std::move(text)) : std::nullopt;
}

}  // namespace

/// Below an empty path the files would be those of the root folder.
AgentConfigService::AgentConfigService(std::string home) : home_(home.empty() ? "/nonexistent" : std::move(home)) {}

AgentConfig::CodexDefaults AgentConfigService::codexDefaults() const {
    return AgentConfig::codexDefaults(settingsIn(AgentConfig::codexConfigPath(home_)));
}

AgentConfig::ClaudeDefaults AgentConfigService::claudeDefaults(const std::string& project) const {
    std::array<std::optional<std::string>, 3> settings;
    const auto paths = AgentConfig::claudeSettingsPaths(project, home_);
    for (std::size_t index = 0; index < paths.size(); ++index)
        settings[index] = settingsIn(paths[index]);
    return AgentConfig::claudeDefaults(settings);
}

bool AgentConfigService::hasStatusLine() const {
    return AgentConfig::hasStatusLine(settingsIn(AgentConfig::claudeUserSettingsPath(home_)));
}

}  // namespace orvane
