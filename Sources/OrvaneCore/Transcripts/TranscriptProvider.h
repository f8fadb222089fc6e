#pragma once

#include <array>

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

}  // namespace orvane
