#include <string>
#include <unordered_set>
#include <vector>

#include "Fuzzing.h"
#include "OrvaneCore/Transcripts/ToolTrace.h"
#include "OrvaneCore/Transcripts/TranscriptFeed.h"

namespace {

using namespace orvane;
using fuzzing::require;

std::vector<std::string_view> linesOf(std::string_view text) {
    std::vector<std::string_view> lines;
    for (std::size_t end = text.find('\n'); end != std::string_view::npos; end = text.find('\n')) {
        lines.push_back(text.substr(0, end));
        text.remove_prefix(end + 1);
    }
    lines.push_back(text);
    return lines;
}

std::vector<TranscriptFeed::Entry> flattened(const std::vector<TranscriptFeed::ThreadItem>& items) {
    std::vector<TranscriptFeed::Entry> all;
    for (const auto& item : items) {
        if (const auto* run = std::get_if<TranscriptFeed::ThreadItem::Activity>(&item.item)) {
            require(!run->entries.empty() && run->id == run->entries.front().id,
                    "a run is named after its first entry");
            all.insert(all.end(), run->entries.begin(), run->entries.end());
        } else if (const auto* single = std::get_if<TranscriptFeed::ThreadItem::Single>(&item.item)) {
            all.push_back(single->entry);
        } else {
            all.push_back(std::get<TranscriptFeed::ThreadItem::Agent>(item.item).entry);
        }
    }
    return all;
}

}  // namespace

/// The first byte chooses the agent and the limit; the rest are lines.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) return 0;
    const auto provider = static_cast<TranscriptProvider>(data[0] % 3);
    const int limit = data[0] / 3 - 1;
    const auto lines = linesOf(fuzzing::asText(data + 1, size - 1));
    TranscriptFeed::Reader reader(provider, limit);
    for (const std::string_view line : lines) {
        reader.take(line);
        require(reader.finish().size() <= static_cast<std::size_t>(limit < 0 ? 0 : limit), "no more than asked for");
    }
    const auto entries = TranscriptFeed::entries(lines, provider, limit);
    require(entries == reader.finish(), "line by line is as all at once");
    std::unordered_set<std::string> ids;
    for (const auto& entry : entries) {
        require(ids.insert(entry.id).second, "no id is given twice");
        require(TranscriptFeed::Entry::decode(entry.encode()).has_value(), "an entry is read back");
    }
    require(flattened(TranscriptFeed::threadItems(entries)) == entries, "a thread shows each entry once, in order");
    const auto events = ToolTrace::events(lines, provider);
    require(ToolTrace::summarize(events, 3).total == static_cast<int>(events.size()), "each event is counted");
    ToolTrace::sensitiveTouches(events);
    ToolTrace::claudeAgentRuns(lines);
    return 0;
}
