#include "OrvaneCore/Agents/AgentSpec.h"

#include <algorithm>
#include <boost/json.hpp>

#include "OrvaneCore/Support/JSONObject.h"
#include "OrvaneCore/Support/Text.h"
#include "OrvaneCore/Workspace/ProjectPalette.h"

namespace orvane {

namespace {

std::string_view withoutBlanksAtEnds(std::string_view text) {
    constexpr std::string_view blanks = " \t";
    text.remove_prefix(std::min(text.find_first_not_of(blanks), text.size()));
    return text.substr(0, text.find_last_not_of(blanks) + 1);
}

JsonArray encodeTexts(const std::vector<std::string>& texts) {
    return JsonArray(texts.begin(), texts.end());
}

}  // namespace

std::optional<AgentSpec::ValidationError> AgentSpec::validate(std::string_view name, std::string_view command,
                                                              const std::vector<AgentSpec>& existing) {
    const std::string_view given = withoutBlanksAtEnds(name);
    if (given.empty()) return ValidationError::emptyName;
    if (withoutBlanksAtEnds(command).empty()) return ValidationError::emptyCommand;
    const bool isTaken = std::ranges::any_of(
        existing, [&](const AgentSpec& spec) { return Text::equalsIgnoringCase(spec.name, given); });
    return isTaken ? std::optional(ValidationError::duplicateName) : std::nullopt;
}

JsonValue AgentSpec::encode() const {
    return boost::json::object{{"id", id.upperText()},
                               {"name", name},
                               {"command", command},
                               {"symbol", symbol},
                               {"colorHex", colorHex},
                               {"busyPatterns", encodeTexts(busyPatterns)},
                               {"waitingPatterns", encodeTexts(waitingPatterns)}};
}

std::optional<AgentSpec> AgentSpec::decode(const JsonValue& json) {
    const JSONObject object(json);
    AgentSpec spec{.id = object.uuid("id").value_or(Uuid::random()),
                   .name = object.string("name"),
                   .command = object.string("command"),
                   .symbol = object.string("symbol"),
                   .colorHex = ProjectPalette::colorHex(object.string("colorHex")).value_or(""),
                   .busyPatterns = object.strings("busyPatterns"),
                   .waitingPatterns = object.strings("waitingPatterns")};
    if (validate(spec.name, spec.command, {})) return std::nullopt;
    return spec;
}

}  // namespace orvane
