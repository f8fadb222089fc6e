#pragma once

#include <string>
#include <string_view>

/// Names of models as agents write them, such as "claude-opus-4-5-20251101[1m]".
namespace orvane::ModelName {

/// How a name ends whose model has a window of a million tokens.
inline constexpr std::string_view largeWindowSuffix = "[1m]";

/// Whether an alias such as "opus" or "sonnet[1m]" may stand for the model.
bool isMeant(std::string_view slug, std::string_view byAlias);

/// "opus-4.5[1m]" of a Claude model; other names stay.
std::string shortened(std::string_view slug);

/// For people: "Opus 4.5", "GPT-5.2 Codex", "Gemini 2.5 Pro".
std::string display(std::string_view slug);

}  // namespace orvane::ModelName
