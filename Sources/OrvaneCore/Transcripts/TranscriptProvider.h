#pragma once

#include <array>
#include <optional>

#include "OrvaneCore/Agents/SessionKind.h"
#include "OrvaneCore/Support/RawValue.h"

namespace orvane {

/// Whose transcript it is. The raw values are those of `SessionKind`.
enum class TranscriptProvider { claude, codex, gemini };

template <>
struct RawValues<TranscriptProvider> {
    static constexpr std::array table = {
        rawValueOf(TranscriptProvider::claude, "claude"),
        rawValueOf(TranscriptProvider::codex, "codex"),
        rawValueOf(TranscriptProvider::gemini, "gemini"),
    };
};

/// Whose transcripts a session writes; none for one that writes none.
inline std::optional<TranscriptProvider> transcriptProvider(SessionKind kind) {
    return fromRawValue<TranscriptProvider>(rawValue(kind));
}

}  // namespace orvane
