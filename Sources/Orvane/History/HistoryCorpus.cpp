#include "Orvane/History/HistoryCorpus.h"

#include <algorithm>
#include <map>
#include <utility>

#include "OrvaneCore/Support/Calendar.h"
#include "OrvaneCore/Support/Paths.h"
#include "OrvaneCore/Support/Text.h"
#include "OrvaneCore/Support/WhenLabeler.h"

namespace orvane {

namespace {

std::vector<HistoryCorpus::ProjectOption> optionsOf(const std::vector<SessionRecord>& records) {
    std::map<std::string, std::size_t> counts;
    for (const SessionRecord& record : records) {
        if (!record.projectPath.empty()) ++counts[record.projectPath];
    }
    std::vector<HistoryCorpus::ProjectOption> options;
    options.reserve(counts.size());
    for (const auto& [path, count] : counts)
        options.push_back({.path = path, .name = lastPathComponent(path), .count = count});
    std::ranges::stable_sort(options, {}, [](const auto& option) { return Text::caseFolded(option.name); });
    return options;
}

}  // namespace

HistoryCorpus::HistoryCorpus(std::vector<SessionRecord> records, Language language)
    : records_(std::move(records)), search_(records_, rawValue(language)), projectOptions_(optionsOf(records_)) {}

HistoryCorpus::Found HistoryCorpus::compute(const ComputeInput& input, const std::stop_token& stop) const {
    std::vector<std::size_t> found = search_.find({.text = input.text,
                                                   .provider = std::nullopt,
                                                   .projectPath = input.project,
                                                   .from = input.from,
                                                   .to = input.to,
                                                   .locale = std::string(rawValue(input.language))},
                                                  stop);
    if (!input.providers.empty())
        std::erase_if(found, [&](std::size_t index) { return !input.providers.contains(records_[index].provider); });
    Found result{.rows = {}, .totalMatches = found.size()};
    const WhenLabeler labeler(input.language, Calendar(input.timeZone), input.now);
    for (SessionRecord& record : firstRecords(input, found)) {
        std::string label = labeler.label(record.lastActivityAt);
        result.rows.push_back({.record = std::move(record), .whenLabel = std::move(label)});
    }
    return result;
}

std::vector<SessionRecord> HistoryCorpus::firstRecords(const ComputeInput& input,
                                                       const std::vector<std::size_t>& found) const {
    const bool isInOrder = input.sort == SessionHistory::Sort::byRecency;
    const std::size_t count = isInOrder ? std::min(found.size(), input.limit) : found.size();
    std::vector<SessionRecord> records;
    records.reserve(count);
    for (std::size_t place = 0; place < count; ++place)
        records.push_back(records_[found[place]]);
    if (isInOrder) return records;
    records = SessionHistory::sorted(std::move(records), input.sort);
    records.resize(std::min(records.size(), input.limit));
    return records;
}

}  // namespace orvane
