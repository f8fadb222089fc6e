#include "OrvaneCore/Agents/EnvironmentList.h"

#include <algorithm>
#include <unordered_set>

namespace orvane::EnvironmentList {

std::string_view name(std::string_view entry) {
    const std::size_t end = entry.find('=');
    return end == std::string_view::npos ? std::string_view() : entry.substr(0, end);
}

std::optional<std::string> value(const EnvironmentEntries& entries, std::string_view variable) {
    const auto entry = std::ranges::find(entries, variable, name);
    return entry == entries.end() ? std::nullopt : std::optional(entry->substr(variable.size() + 1));
}

void set(EnvironmentEntries& entries, std::string_view variable, std::string_view value) {
    std::string entry(variable);
    entry.append("=").append(value);
    const auto old = std::ranges::find(entries, variable, name);
    if (old == entries.end()) {
        entries.push_back(std::move(entry));
    } else {
        *old = std::move(entry);
    }
}

EnvironmentEntries merging(const EnvironmentEntries& added, EnvironmentEntries entries) {
    std::unordered_set<std::string> present;
    for (const std::string& entry : entries)
        present.emplace(name(entry));
    for (const std::string& entry : added) {
        if (present.emplace(name(entry)).second) entries.push_back(entry);
    }
    return entries;
}

}  // namespace orvane::EnvironmentList
