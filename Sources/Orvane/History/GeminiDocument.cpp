#include "Orvane/History/GeminiDocument.h"

#include "OrvaneCore/Transcripts/GeminiTranscript.h"
#include "Platform/Files.h"

namespace orvane::GeminiDocument {

std::expected<std::vector<std::string>, SystemError> lines(const std::string& path) {
    constexpr std::size_t longest = std::size_t{64} << 20;
    const auto text = readWholeFile(path, longest);
    if (!text) return std::unexpected(text.error());
    return GeminiTranscript::legacyLines(*text);
}

}  // namespace orvane::GeminiDocument
