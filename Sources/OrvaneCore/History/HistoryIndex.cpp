#include "OrvaneCore/History/HistoryIndex.h"

#include <cmath>
#include <utility>

#include "OrvaneCore/Support/JSONObject.h"

namespace orvane {

namespace {

/// In seconds: numbers pass through JSON and file systems of coarser clocks.
constexpr double mtimeTolerance = 0.001;

JsonValue encoded(const HistoryIndex::Entry& entry) {
    return {{"mtime", entry.mtime},
            {"byteSize", entry.byteSize},
            {"record", entry.record ? entry.record->encode() : JsonValue()}};
}

std::optional<HistoryIndex::Entry> decoded(const JsonValue& json) {
    const JSONObject object(json);
    const JsonValue* record = object.find("record");
    if (record == nullptr || !object.contains("mtime")) return std::nullopt;
    HistoryIndex::Entry entry{
        .mtime = object.number("mtime"), .byteSize = object.integer("byteSize", -1), .record = std::nullopt};
    if (record->is_null()) return entry;
    entry.record = SessionRecord::decode(*record);
    return entry.record ? std::optional(std::move(entry)) : std::nullopt;
}

bool isCurrent(const HistoryIndex::Entry& entry, Date modifiedAt, std::int64_t byteSize) {
    return entry.byteSize == byteSize && std::abs(entry.mtime - modifiedAt.secondsSince1970) <= mtimeTolerance;
}

}  // namespace

bool HistoryIndex::needsReindex(const std::optional<Entry>& cached, Date modifiedAt, std::int64_t byteSize) {
    return !cached || !isCurrent(*cached, modifiedAt, byteSize);
}

bool HistoryIndex::needsReindex(const std::string& fileAt, Date modifiedAt, std::int64_t byteSize) const {
    const auto found = entries_.find(fileAt);
    return found == entries_.end() || !isCurrent(found->second, modifiedAt, byteSize);
}

std::optional<HistoryIndex::Entry> HistoryIndex::entry(const std::string& forFileAt) const {
    const auto found = entries_.find(forFileAt);
    return found == entries_.end() ? std::nullopt : std::optional(found->second);
}

void HistoryIndex::store(SessionRecord record, Date modifiedAt, std::int64_t byteSize) {
    std::string path = record.filePath;
    entries_[std::move(path)] = {
        .mtime = modifiedAt.secondsSince1970, .byteSize = byteSize, .record = std::move(record)};
}

void HistoryIndex::storeNone(const std::string& fileAt, Date modifiedAt, std::int64_t byteSize) {
    entries_[fileAt] = {.mtime = modifiedAt.secondsSince1970, .byteSize = byteSize, .record = std::nullopt};
}

bool HistoryIndex::prune(const std::set<std::string>& keeping) {
    return std::erase_if(entries_, [&](const auto& each) { return !keeping.contains(each.first); }) > 0;
}

std::vector<SessionRecord> HistoryIndex::records() const {
    std::vector<SessionRecord> all;
    all.reserve(entries_.size());
    for (const auto& [path, entry] : entries_) {
        if (entry.record) all.push_back(*entry.record);
    }
    return all;
}

JsonValue HistoryIndex::encode() const {
    boost::json::object entries;
    entries.reserve(entries_.size());
    for (const auto& [path, entry] : entries_)
        entries.emplace(path, encoded(entry));
    return {{"version", currentVersion}, {"entries", std::move(entries)}};
}

HistoryIndex HistoryIndex::decode(std::string_view text) {
    HistoryIndex index;
    const auto json = Json::parse(text);
    const JSONObject object = json ? JSONObject(*json) : JSONObject();
    if (object.integer("version") != currentVersion) return index;
    object.object("entries").forEach([&](std::string_view path, const JsonValue& value) {
        if (auto entry = decoded(value)) index.entries_.emplace(path, *std::move(entry));
    });
    return index;
}

}  // namespace orvane
