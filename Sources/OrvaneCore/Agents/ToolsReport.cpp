#include "OrvaneCore/Agents/ToolsReport.h"

#include <algorithm>

#include "OrvaneCore/Agents/ToolPathRescue.h"
#include "OrvaneCore/Support/Text.h"

namespace orvane {

namespace {

constexpr std::string_view prefix = "OV::";
constexpr std::string_view separator = "::";

/// Takes what stands before the next separator, or all there is.
std::string_view takeField(std::string_view& line) {
    const std::string_view field = line.substr(0, line.find(separator));
    line.remove_prefix(std::min(field.size() + separator.size(), line.size()));
    return field;
}

struct Fact {
    std::string_view binary;
    std::string_view kind;
    std::string_view detail;
};

/// A line of ours, also behind a prompt or banner that did not end its own line.
std::optional<Fact> readFact(std::string_view line) {
    const std::size_t start = line.find(prefix);
    if (start == std::string_view::npos) return std::nullopt;
    line.remove_prefix(start + prefix.size());
    const std::string_view binary = takeField(line);
    const std::string_view kind = takeField(line);
    return Fact{.binary = binary, .kind = kind, .detail = Text::trimmed(line)};
}

void apply(const Fact& fact, const AgentTool& tool, ToolsReport& report) {
    ToolState& state = report.states[std::string(tool.id)];
    if (fact.kind == "present") {
        state.value = ToolState::Installed{};
        if (fact.detail.starts_with('/')) report.binaryPaths[std::string(tool.id)] = fact.detail;
    } else if (fact.kind == "version") {
        // The shell prints it for a tool that is missing, too.
        if (auto* installed = std::get_if<ToolState::Installed>(&state.value)) {
            installed->version = ToolsReport::version(fact.detail);
        }
    }
}

/// Finds the program that `b` names.
constexpr std::string_view findProgram =
    R"(if p=$(command -v "$b" 2>/dev/null); then echo "OV::$b::present::$p"; else echo "OV::$b::missing"; fi)";

}  // namespace

std::string ToolsReport::script(const std::vector<std::string>& toolFolders) {
    std::string binaries;
    for (const AgentTool& tool : agentTools)
        binaries.append(tool.binary).append(" ");
    binaries += "npm";
    std::string text = ToolPathRescue::shellPrelude(toolFolders);
    text.append("\nfor b in ").append(binaries).append("; do\n").append(findProgram);
    text += "\ndone\nfor b in " + binaries + "; do\n";
    text += R"sh([ "$b" = npm ] || echo "OV::$b::version::$("$b" --version 2>/dev/null </dev/null | head -1)" &)sh";
    text += "\ndone\nwait\n";
    return text;
}

std::string ToolsReport::script(const AgentTool& tool, const std::vector<std::string>& toolFolders) {
    std::string text = ToolPathRescue::shellPrelude(toolFolders);
    text.append("\nb=").append(tool.binary).append("\n").append(findProgram);
    text.append("\necho \"OV::$b::version::$(").append(versionScript(tool)).append(")\"\n");
    return text;
}

ToolsReport ToolsReport::parse(std::string_view output) {
    ToolsReport report;
    for (const AgentTool& tool : agentTools)
        report.states[std::string(tool.id)].value = ToolState::Missing{};
    while (!output.empty()) {
        const std::string_view line = output.substr(0, output.find('\n'));
        output.remove_prefix(std::min(line.size() + 1, output.size()));
        const std::optional<Fact> fact = readFact(line);
        if (!fact) continue;
        if (fact->binary == "npm") report.npmAvailable = fact->kind == "present";
        const auto* const tool = std::ranges::find(agentTools, fact->binary, &AgentTool::binary);
        if (tool != agentTools.end()) apply(*fact, *tool, report);
    }
    return report;
}

std::string ToolsReport::versionScript(const AgentTool& tool) {
    return std::string(tool.binary) + " --version 2>/dev/null | head -1";
}

std::optional<std::string> ToolsReport::version(std::string_view output) {
    const std::string line = Text::oneLine(output.substr(0, output.find('\n')));
    return line.empty() ? std::nullopt : std::optional(Text::truncated(line, maximumVersionLength));
}

std::string ToolsReport::installScript(const AgentTool& tool) {
    return std::string(tool.installCommand) + " 2>&1";
}

}  // namespace orvane
