#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "OrvaneCore/Support/Date.h"

/// How a prompt is typed into the composer of an agent.
namespace orvane::PromptTyping {

enum class Marks { paste, none };

/// The bytes for a prompt, between the marks of a bracketed paste, so that its line breaks do not send it line by line.
/// What would end the paste early, and other characters that are keys, is left out; without marks line breaks are line
/// feeds.
std::string bytes(std::string_view prompt, Marks marks);

/// How long the agent is given to take the bytes in before Return is pressed.
Seconds returnDelay(std::string_view prompt);

/// Whether a draft on the screen is this prompt: all or a part of it, as a composer that wraps and scrolls shows it, or
/// the words by which agents stand for a long paste ("[Pasted text #1 +20 lines]").
bool isShown(std::string_view draft, std::string_view prompt);

/// Whether these keystrokes, typed behind this draft, complete "/clear" and submit it.
bool completesClear(const std::optional<std::string>& draft, std::string_view inputBytes);

}  // namespace orvane::PromptTyping
