#include "OrvaneCore/History/SessionHistory.h"

#include <algorithm>
#include <compare>
#include <numeric>
#include <utility>

#include "OrvaneCore/History/HistorySearch.h"
#include "OrvaneCore/Support/ShellText.h"
#include "OrvaneCore/Support/Text.h"

namespace orvane::SessionHistory {

namespace {

std::string_view resuming(Provider provider) {
    switch (provider) {
        case Provider::claude:
            return "claude --resume ";
        case Provider::codex:
            return "codex resume ";
        case Provider::gemini:
            return "gemini --resume ";
    }
    std::unreachable();
}

/// What a field compares by: a text or a number, the other one being equal for all.
struct SortKey {
    std::string text;
    double number = 0;

    auto operator<=>(const SortKey&) const = default;
};

SortKey sortKey(const SessionRecord& record, SortField field) {
    switch (field) {
        case SortField::title:
            return {.text = Text::caseFolded(record.title)};
        case SortField::project:
            return {.text = Text::caseFolded(record.projectName())};
        case SortField::provider:
            return {.number = static_cast<double>(record.provider)};
        case SortField::lastActivity:
            return {.number = record.lastActivityAt.secondsSince1970};
        case SortField::messages:
            return {.number = static_cast<double>(record.messageCount)};
    }
    std::unreachable();
}

}  // namespace

std::vector<SessionRecord> search(const std::vector<SessionRecord>& records, const HistoryQuery& query) {
    const HistorySearch search(records, query.locale);
    std::vector<SessionRecord> found;
    for (const std::size_t index : search.find(query))
        found.push_back(records[index]);
    return found;
}

Sort naturalSort(SortField field) {
    using enum SortField;
    return {.field = field, .ascending = field == title || field == project || field == provider};
}

std::vector<SessionRecord> sorted(std::vector<SessionRecord> records, Sort by) {
    std::vector<SortKey> keys;
    keys.reserve(records.size());
    for (const SessionRecord& record : records)
        keys.push_back(sortKey(record, by.field));
    std::vector<std::size_t> order(records.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    std::ranges::stable_sort(order, [&](std::size_t a, std::size_t b) {
        const auto compared = keys[a] <=> keys[b];
        if (compared != 0) return by.ascending ? compared < 0 : compared > 0;
        return records[a].lastActivityAt > records[b].lastActivityAt;
    });
    std::vector<SessionRecord> result;
    result.reserve(order.size());
    for (const std::size_t index : order)
        result.push_back(std::move(records[index]));
    return result;
}

std::vector<Day> groupByDay(std::vector<SessionRecord> records, const Calendar& calendar) {
    std::vector<Day> days;
    for (SessionRecord& record : sorted(std::move(records), Sort::byRecency)) {
        const Date day = calendar.startOfDay(record.lastActivityAt);
        if (days.empty() || days.back().day != day) days.push_back({.day = day, .records = {}});
        days.back().records.push_back(std::move(record));
    }
    return days;
}

std::optional<std::string> resumeCommand(Provider provider, std::string_view id) {
    const std::string_view trimmed = Text::trimmed(id);
    if (trimmed.empty()) return std::nullopt;
    return std::string(resuming(provider)) + shellQuoted(trimmed);
}

std::optional<std::string> resumeIdentifier(std::string_view inCommand) {
    std::vector<std::string> words = shellWords(inCommand);
    for (std::size_t index = 0; index < words.size(); ++index) {
        const bool isSubcommand = index > 0 && words[index] == "resume";
        if (words[index] != "--resume" && !isSubcommand) continue;
        if (index + 1 == words.size()) return std::nullopt;
        std::string& id = words[index + 1];
        if (id.empty() || id.starts_with('-')) return std::nullopt;
        return std::move(id);
    }
    return std::nullopt;
}

}  // namespace orvane::SessionHistory
