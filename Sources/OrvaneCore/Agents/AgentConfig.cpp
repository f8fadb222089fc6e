#include "OrvaneCore/Agents/AgentConfig.h"

#include "OrvaneCore/Support/JSONObject.h"
#include "OrvaneCore/Support/Paths.h"
#include "OrvaneCore/Support/Toml.h"

namespace orvane::AgentConfig {

namespace {

std::optional<std::string> setting(const JSONObject& settings, std::string_view key) {
    std::optional<std::string> text = settings.optionalString(key);
    return text && !text->empty() ? text : std::nullopt;
}

/// A JSON object, or none.
std::optional<JsonValue> readSettings(const std::optional<std::string>& text) {
    std::optional<JsonValue> json = text ? Json::parse(*text) : std::nullopt;
    return json && json->is_object() ? json : std::nullopt;
}

ClaudeDefaults claudeDefaultsIn(const JSONObject& settings) {
    ClaudeDefaults defaults{.model = setting(settings, "model")};
    const auto effort = setting(settings, "effortLevel").or_else([&] { return setting(settings, "effort"); });
    if (effort) defaults.effort = *effort;
    const auto mode = setting(settings.object("permissions"), "defaultMode");
    if (mode && mode != "manual") defaults.permissionMode = *mode;
    return defaults;
}

}  // namespace

std::string codexConfigPath(const std::string& home) {
    return joinedPath(home, ".codex/config.toml");
}

CodexDefaults codexDefaults(const std::optional<std::string>& configToml) {
    if (!configToml) return {};
    const Toml::Document document = Toml::read(*configToml);
    const JSONObject config(document.root);
    CodexDefaults defaults{.model = setting(config, "model"), .sandbox = config.raw<CodexSandbox>("sandbox_mode")};
    if (const auto effort = setting(config, "model_reasoning_effort")) defaults.reasoningEffort = *effort;
    return defaults;
}

std::string claudeUserSettingsPath(const std::string& home) {
    return joinedPath(home, ".claude/settings.json");
}

std::array<std::string, 3> claudeSettingsPaths(const std::string& project, const std::string& home) {
    return {joinedPath(project, ".claude/settings.local.json"), joinedPath(project, ".claude/settings.json"),
            claudeUserSettingsPath(home)};
}

ClaudeDefaults claudeDefaults(std::span<const std::optional<std::string>> settings) {
    for (const std::optional<std::string>& text : settings) {
        if (const auto json = readSettings(text)) return claudeDefaultsIn(JSONObject(*json));
    }
    return {};
}

bool hasStatusLine(const std::optional<std::string>& settings) {
    const auto json = readSettings(settings);
    return json && JSONObject(*json).contains("statusLine");
}

}  // namespace orvane::AgentConfig
