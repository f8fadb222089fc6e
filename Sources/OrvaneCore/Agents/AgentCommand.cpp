#include "OrvaneCore/Agents/AgentCommand.h"

#include "OrvaneCore/Support/Regex.h"
#include "OrvaneCore/Support/Text.h"

namespace orvane::AgentCommand {

bool clearsContext(std::string_view text) {
    return Text::trimmed(text) == "/clear";
}

bool isSlashCommand(std::string_view text) {
    // Marks belong to the letter before them.
    static const Regex command = *Regex::compile(R"(^/(?:[\p{L}\p{N}_:-]\p{M}*+){1,64}(?=\s|\z))");
    return command.matches(Text::trimmed(text));
}

std::optional<std::string> optionValue(std::string_view command, std::string_view option) {
    const std::string marker = " " + std::string(option);
    for (std::size_t at = command.find(marker); at != std::string_view::npos; at = command.find(marker, at + 1)) {
        std::string_view rest = command.substr(at + marker.size());
        if (!rest.starts_with(' ') && !rest.starts_with('=')) continue;
        rest.remove_prefix(1);
        rest = Text::trimmed(rest.substr(0, rest.find(' ', rest.find_first_not_of(' '))));
        if (rest.size() >= 2 && (rest.front() == '\'' || rest.front() == '"') && rest.back() == rest.front()) {
            rest = rest.substr(1, rest.size() - 2);
        }
        if (!rest.empty()) return std::string(rest);
    }
    return std::nullopt;
}

}  // namespace orvane::AgentCommand
