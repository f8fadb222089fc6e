#include "Orvane/History/TranscriptDrift.h"

#include <algorithm>
#include <functional>
#include <span>
#include <string_view>
#include <vector>

#include "Orvane/History/HistoryFiles.h"
#include "Orvane/History/TranscriptEnds.h"
#include "OrvaneCore/Transcripts/Form/TranscriptForm.h"

namespace orvane {

namespace {

using Kinds = std::map<std::string, std::size_t>;
using Lines = std::span<const std::string_view>;

void add(const Kinds& from, Kinds& into) {
    for (const auto& [kind, count] : from)
        into[kind] += count;
}

/// The last line may be cut, by us or by the agent that is writing it: then it tells nothing.
void count(TranscriptProvider provider, Lines lines, Kinds& into) {
    if (lines.empty()) return;
    add(TranscriptForm::notUnderstood(provider, lines.first(lines.size() - 1)), into);
    Kinds last = TranscriptForm::notUnderstood(provider, lines.last(1));
    last.erase("malformed");
    add(last, into);
}

}  // namespace

TranscriptDrift TranscriptDrift::look(const std::string& home, std::size_t fileLimit) {
    std::vector<HistoryFiles::File> files = HistoryFiles::list(home);
    // The older form of Gemini's files is one document, which changes no more.
    std::erase_if(files, [](const HistoryFiles::File& file) { return file.path.ends_with(".json"); });
    std::ranges::sort(files, std::ranges::greater(), &HistoryFiles::File::modifiedAt);
    TranscriptDrift drift{.filesRead = 0, .filesFound = files.size(), .notUnderstood = {}};
    files.resize(std::min(files.size(), fileLimit));
    TranscriptEnds ends;
    for (const HistoryFiles::File& file : files) {
        if (!ends.read(file.path)) continue;
        ++drift.filesRead;
        Kinds& kinds = drift.notUnderstood[file.provider];
        count(file.provider, ends.head(), kinds);
        count(file.provider, ends.tail(), kinds);
    }
    std::erase_if(drift.notUnderstood, [](const auto& provider) { return provider.second.empty(); });
    return drift;
}

}  // namespace orvane
