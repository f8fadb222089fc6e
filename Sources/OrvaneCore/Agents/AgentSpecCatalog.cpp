#include "OrvaneCore/Agents/AgentSpecCatalog.h"

#include <algorithm>
#include <array>
#include <boost/json.hpp>

#include "OrvaneCore/Support/JsonList.h"
#include "OrvaneCore/Support/Text.h"
#include "OrvaneCore/Workspace/UniqueIDs.h"

namespace orvane::AgentSpecCatalog {

namespace {

struct Preset {
    const char* name;
    const char* command;
    const char* symbol;
    const char* colorHex;
};

constexpr std::array suggested = {
    Preset{.name = "OpenCode",
           .command = "opencode",
           .symbol = "chevron.left.forwardslash.chevron.right",
           .colorHex = "6FCF97"},
    Preset{.name = "Cursor CLI", .command = "cursor-agent", .symbol = "cursorarrow", .colorHex = "BB86FC"},
    Preset{.name = "Copilot CLI", .command = "copilot", .symbol = "airplane", .colorHex = "7AA2F7"},
    Preset{.name = "Aider", .command = "aider", .symbol = "person.2", .colorHex = "F0A35E"},
    Preset{.name = "Amp", .command = "amp", .symbol = "bolt", .colorHex = "E86A6A"},
    Preset{.name = "Goose", .command = "goose session", .symbol = "bird", .colorHex = "6FB7D1"},
};

}  // namespace

std::vector<AgentSpec> presets() {
    std::vector<AgentSpec> specs;
    specs.reserve(suggested.size());
    for (const Preset& preset : suggested) {
        specs.push_back({.id = Uuid::random(),
                         .name = preset.name,
                         .command = preset.command,
                         .symbol = preset.symbol,
                         .colorHex = preset.colorHex,
                         .busyPatterns = {},
                         .waitingPatterns = {}});
    }
    return specs;
}

std::optional<AgentSpec> preset(std::string_view name) {
    for (AgentSpec& spec : presets()) {
        const auto program = std::string_view(spec.command).substr(0, spec.command.find(' '));
        if (Text::equalsIgnoringCase(spec.name, name) || Text::equalsIgnoringCase(program, name))
            return std::move(spec);
    }
    return std::nullopt;
}

std::vector<AgentSpec> presetsMissing(const std::vector<AgentSpec>& specs) {
    std::vector<AgentSpec> missing = presets();
    std::erase_if(missing, [&](const AgentSpec& preset) {
        return std::ranges::any_of(specs, [&](const AgentSpec& spec) {
            return Text::equalsIgnoringCase(spec.name, preset.name) || spec.command == preset.command;
        });
    });
    return missing;
}

JsonValue encode(const std::vector<AgentSpec>& specs) {
    return encodedList(specs);
}

std::vector<AgentSpec> decode(const JsonValue& json) {
    std::vector<AgentSpec> specs;
    if (!json.is_array()) return specs;
    UniqueIDs ids;
    for (const JsonValue& entry : json.get_array()) {
        std::optional<AgentSpec> spec = AgentSpec::decode(entry);
        if (!spec) continue;
        spec->id = ids.claim(spec->id);
        specs.push_back(*std::move(spec));
    }
    return specs;
}

}  // namespace orvane::AgentSpecCatalog
