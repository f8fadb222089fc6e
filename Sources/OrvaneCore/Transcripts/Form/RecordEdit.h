#pragma once

#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>

#include "OrvaneCore/Transcripts/TranscriptRecord.h"

namespace orvane {

/// Writing a record anew with some of its members changed.
namespace RecordEdit {

/// A member's new value as JSON; none leaves it out.
struct Change {
    std::string_view key;
    std::optional<std::string> json;
};

/// The text as a JSON string.
std::string jsonString(std::string_view text);

/// The object as one line of JSON: its members in their order, then the changed ones that it lacked.
std::string object(const TranscriptRecord& record, std::initializer_list<Change> changes);

}  // namespace RecordEdit

}  // namespace orvane
