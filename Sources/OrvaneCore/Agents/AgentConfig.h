#pragma once

#include <array>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "OrvaneCore/Support/RawValue.h"

namespace orvane {

/// What Codex lets the commands do that it runs.
enum class CodexSandbox { readOnly, workspace, full };

template <>
struct RawValues<CodexSandbox> {
    static constexpr std::array table = {
        rawValueOf(CodexSandbox::readOnly, "read-only"),
        rawValueOf(CodexSandbox::workspace, "workspace-write"),
        rawValueOf(CodexSandbox::full, "danger-full-access"),
    };
};

/// Reads with what model and mode an agent starts, from the agents' own settings files. A text is none when its file
/// cannot be read. Settings that are empty or of another type than they should be count as missing.
namespace AgentConfig {

struct CodexDefaults {
    std::optional<std::string> model;
    std::string reasoningEffort = "medium";
    std::optional<CodexSandbox> sandbox;

    bool operator==(const CodexDefaults&) const = default;
};

struct ClaudeDefaults {
    std::optional<std::string> model;
    std::string effort = "high";
    std::string permissionMode = "default";

    bool operator==(const ClaudeDefaults&) const = default;
};

std::string codexConfigPath(const std::string& home);
CodexDefaults codexDefaults(const std::optional<std::string>& configToml);

/// Those that go for all projects, where a status line is set up.
std::string claudeUserSettingsPath(const std::string& home);
/// The files that Claude takes its settings from, those of the project first.
std::array<std::string, 3> claudeSettingsPaths(const std::string& project, const std::string& home);
/// Everything is read from the first text that is a JSON object; the others do not add to it.
ClaudeDefaults claudeDefaults(std::span<const std::optional<std::string>> settings);
/// Whether the settings in the user's home folder give Claude a status line.
bool hasStatusLine(const std::optional<std::string>& settings);

}  // namespace AgentConfig

}  // namespace orvane
