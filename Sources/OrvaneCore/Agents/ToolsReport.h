#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "OrvaneCore/Agents/AgentTool.h"

namespace orvane {

/// Which tools a login shell finds.
struct ToolsReport {
    /// In characters.
    static constexpr std::size_t maximumVersionLength = 80;

    /// By the tool's id, one for each tool: what the shell did not speak of is missing.
    std::map<std::string, ToolState> states;
    /// By the tool's id. A tool that is an alias or a function of the user's shell has none.
    std::map<std::string, std::string> binaryPaths;
    /// Unknown when the shell did not get that far.
    std::optional<bool> npmAvailable;

    bool operator==(const ToolsReport&) const = default;

    /// What the shell is to run. `toolFolders` are those of `ToolPathRescue::hosting`.
    static std::string script(const std::vector<std::string>& toolFolders);
    /// The same for one tool alone.
    static std::string script(const AgentTool& tool, const std::vector<std::string>& toolFolders);

    /// Reads what the script printed, among whatever the user's profile prints and however early it was ended.
    static ToolsReport parse(std::string_view output);

    /// Prints the version of one tool alone, for `version`.
    static std::string versionScript(const AgentTool& tool);
    /// The first line of what a program said of its version, cut to `maximumVersionLength`; none when it is blank.
    static std::optional<std::string> version(std::string_view output);
    /// Installs a tool, or its newest version in its place, and prints everything on standard output.
    static std::string installScript(const AgentTool& tool);
};

}  // namespace orvane
