#include "OrvaneCore/History/HistoryIds.h"

#include <algorithm>
#include <string>

#include "OrvaneCore/Support/Text.h"

namespace orvane::HistoryIds {

std::expected<std::size_t, IdPrefix::Error> resolve(std::string_view prefix,
                                                    const std::vector<SessionRecord>& records) {
    const std::string wanted = Text::caseFolded(Text::trimmed(prefix));
    std::vector<std::size_t> begun;
    std::vector<std::size_t> whole;
    for (std::size_t index = 0; !wanted.empty() && index < records.size(); ++index) {
        const std::string id = Text::caseFolded(records[index].id);
        if (id.starts_with(wanted)) begun.push_back(index);
        if (id == wanted) whole.push_back(index);
    }
    const auto& found = whole.empty() ? begun : whole;
    if (found.empty()) return std::unexpected(IdPrefix::Error::none);
    const auto lastActivity = [&](std::size_t index) { return records[index].lastActivityAt; };
    const std::size_t newest = *std::ranges::max_element(found, {}, lastActivity);
    const bool areCopies = std::ranges::all_of(found, [&](std::size_t index) {
        return records[index].id == records[newest].id && records[index].provider == records[newest].provider;
    });
    if (!areCopies) return std::unexpected(IdPrefix::Error::several);
    return newest;
}

std::size_t distinguishingLength(const std::vector<SessionRecord>& records, std::size_t minimum) {
    std::vector<std::string> ids;
    ids.reserve(records.size());
    for (const SessionRecord& record : records)
        ids.push_back(Text::caseFolded(record.id));
    std::ranges::sort(ids);
    std::size_t length = minimum;
    for (std::size_t index = 1; index < ids.size(); ++index) {
        const std::string& left = ids[index - 1];
        const std::string& right = ids[index];
        if (left == right) continue;
        const auto common = std::ranges::mismatch(left, right).in1 - left.begin();
        length = std::max(length, static_cast<std::size_t>(common) + 1);
    }
    return length;
}

}  // namespace orvane::HistoryIds
