#include "OrvaneCore/Transcripts/TranscriptReader.h"

#include <utility>

#include "OrvaneCore/Transcripts/ClaudeTranscript.h"
#include "OrvaneCore/Transcripts/CodexTranscript.h"
#include "OrvaneCore/Transcripts/Form/TranscriptForm.h"
#include "OrvaneCore/Transcripts/GeminiTranscript.h"

namespace orvane::TranscriptReader {

std::optional<TranscriptReading> read(TranscriptProvider provider, std::span<const std::string_view> lines) {
    const NormalizedLines form = TranscriptForm::normalized(provider, lines);
    switch (provider) {
        case TranscriptProvider::claude:
            return ClaudeTranscript::parse(form);
        case TranscriptProvider::codex:
            return CodexTranscript::parse(form);
        case TranscriptProvider::gemini:
            return GeminiTranscript::parse(form);
    }
    std::unreachable();
}

}  // namespace orvane::TranscriptReader
