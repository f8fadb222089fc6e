#include "OrvaneCore/Transcripts/RecordSearch.h"

namespace orvane::RecordSearch {

namespace {

/// `taken` gives the value of a member, or none where it is of another type. The nesting is limited by the parser.
template <typename Taken>
auto search(const TranscriptRecord& record, std::string_view key, const Taken& taken) -> decltype(taken(record)) {
    for (const TranscriptRecord& element : record.elements()) {
        if (const auto found = search(element, key, taken)) return found;
    }
    if (!record.isObject()) return std::nullopt;
    if (const auto own = taken(record[key])) return own;
    const auto members = record.members();
    for (const bool arrays : {false, true}) {
        for (const auto& member : members) {
            if (arrays ? !member.value.isArray() : !member.value.isObject()) continue;
            if (const auto found = search(member.value, key, taken)) return found;
        }
    }
    return std::nullopt;
}

}  // namespace

std::optional<std::string_view> string(const TranscriptRecord& record, std::string_view key) {
    return search(record, key, [](const TranscriptRecord& value) { return value.string(); });
}

std::optional<std::int64_t> integer(const TranscriptRecord& record, std::string_view key) {
    return search(record, key, [](const TranscriptRecord& value) { return value.integer(); });
}

TranscriptRecord object(const TranscriptRecord& record, std::string_view key) {
    const auto taken = [](const TranscriptRecord& value) {
        return value.isObject() ? std::optional(value) : std::nullopt;
    };
    return search(record, key, taken).value_or(TranscriptRecord());
}

}  // namespace orvane::RecordSearch
