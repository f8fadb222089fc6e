#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>

#include "OrvaneCore/Support/RawValue.h"

namespace orvane {

/// The conversations that agents keep on disk, and how one is taken up again.
namespace SessionHistory {

/// Whose conversation it is. The raw values are those of `SessionKind`.
enum class Provider { claude, codex, gemini };

/// The shell command that goes on with the conversation; none for a blank id. The id is one word of it, whatever it
/// holds.
std::optional<std::string> resumeCommand(Provider provider, std::string_view id);

/// The id that a command line resumes: the word behind "--resume" or behind the bare word "resume"; none when there is
/// no such word or it is an option.
std::optional<std::string> resumeIdentifier(std::string_view inCommand);

}  // namespace SessionHistory

template <>
struct RawValues<SessionHistory::Provider> {
    static constexpr std::array table = {
        rawValueOf(SessionHistory::Provider::claude, "claude"),
        rawValueOf(SessionHistory::Provider::codex, "codex"),
        rawValueOf(SessionHistory::Provider::gemini, "gemini"),
    };
};

}  // namespace orvane
