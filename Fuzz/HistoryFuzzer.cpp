#include "Fuzzing.h"
#include "OrvaneCore/History/SessionHistory.h"
#include "OrvaneCore/History/TitleScan.h"
#include "OrvaneCore/Support/Text.h"

namespace {

using namespace orvane;

std::vector<std::string_view> linesOf(std::string_view text) {
    std::vector<std::string_view> lines;
    while (!text.empty()) {
        lines.push_back(text.substr(0, text.find('\n')));
        text.remove_prefix(std::min(lines.back().size() + 1, text.size()));
    }
    return lines;
}

}  // namespace

/// The first byte says where the head ends and the tail begins.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) return 0;
    const auto lines = linesOf(fuzzing::asText(data + 1, size - 1));
    const std::span<const std::string_view> all(lines);
    const std::size_t headSize = std::min<std::size_t>(data[0], all.size());
    for (const auto& [provider, name] : RawValues<TranscriptProvider>::table) {
        const auto record = SessionHistory::record("/logs/a.jsonl", all.first(headSize), all.subspan(headSize / 2),
                                                   provider, {1000}, size, std::nullopt);
        SessionHistory::TitleScan scan;
        for (const std::string_view line : all)
            SessionHistory::absorbTitle(line, provider, scan);
        if (!record) continue;
        fuzzing::require(!record->id.empty() && !record->title.empty(), "a conversation has an id and a title");
        fuzzing::require(Text::characterCount(record->title) <= SessionHistory::titleLimit, "a title is short");
        fuzzing::require(Text::characterCount(record->preview) <= SessionHistory::previewLimit, "a preview is short");
        fuzzing::require(record->messageCount >= 0 && record->approximateTokens >= 0, "counts do not fall below 0");
    }
    return 0;
}
