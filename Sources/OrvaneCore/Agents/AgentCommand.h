#pragma once

#include <optional>
#include <string>
#include <string_view>

/// What a text means that is typed to an agent. White space and newlines around it do not count.
namespace orvane::AgentCommand {

/// Whether it makes the agent forget the conversation: "/clear" and nothing else.
bool clearsContext(std::string_view text);

/// Whether it begins with a command of the agent, as "/review:fast" and unlike a path: behind the slash stands a word
/// of 1 to 64 letters, digits, '-', '_' and ':'.
bool isSlashCommand(std::string_view text);

/// What a command line gives an option, as "--model opus" or "--model=opus"; quotes around it are taken away.
std::optional<std::string> optionValue(std::string_view command, std::string_view option);

}  // namespace orvane::AgentCommand
