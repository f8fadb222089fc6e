#include "OrvaneCore/Transcripts/Form/RecordEdit.h"

#include <algorithm>

#include "OrvaneCore/Support/Json.h"

namespace orvane::RecordEdit {

namespace {

void append(std::string& object, std::string_view key, std::string_view json) {
    object += object.size() > 1 ? "," : "";
    object += jsonString(key);
    object += ':';
    object += json;
}

}  // namespace

std::string jsonString(std::string_view text) {
    return Json::write(JsonValue(boost::json::string(text)));
}

std::string object(const TranscriptRecord& record, std::initializer_list<Change> changes) {
    std::string written = "{";
    const auto members = record.members();
    for (const auto& [key, value] : members) {
        const auto* const change = std::ranges::find(changes, key, &Change::key);
        if (change == changes.end()) {
            append(written, key, value.json());
        } else if (change->json) {
            append(written, key, *change->json);
        }
    }
    for (const Change& change : changes) {
        const bool isThere = std::ranges::find(members, change.key, &TranscriptRecord::Member::key) != members.end();
        if (change.json && !isThere) append(written, change.key, *change.json);
    }
    return written + "}";
}

}  // namespace orvane::RecordEdit
