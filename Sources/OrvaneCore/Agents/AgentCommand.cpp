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

}  // namespace orvane::AgentCommand
