#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace orvane {

/// What a session is called by itself: from what its agent writes or from what it was asked.
namespace TabTitle {

inline constexpr std::size_t longest = 72;  ///< characters of a title that is made from a prompt

/// One row without control characters and without the marks before it that turn while an agent works; none when
/// nothing remains.
std::optional<std::string> clean(std::string_view title);

/// From what a person asked. None for what no person wrote: local commands, and what an agent's CLI writes in the
/// person's name, which stands in tags or brackets or begins with a known heading.
std::optional<std::string> fromPrompt(std::string_view text);

/// From a line of a Codex transcript that holds a person's message, in any of the forms that Codex has for it; none for
/// any other line.
std::optional<std::string> fromCodexUserMessageLine(std::string_view line);

/// From a line with what Codex says while it works, for a session that holds no person's message.
std::optional<std::string> fromCodexAgentMessageLine(std::string_view line);

}  // namespace TabTitle

}  // namespace orvane
