#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "OrvaneCore/Transcripts/TranscriptRecord.h"

namespace orvane {

/// The first value of a key at any depth: an object's own member, then what its objects hold, then its arrays.
namespace RecordSearch {

std::optional<std::string_view> string(const TranscriptRecord& record, std::string_view key);
std::optional<std::int64_t> integer(const TranscriptRecord& record, std::string_view key);
/// Absent when there is none.
TranscriptRecord object(const TranscriptRecord& record, std::string_view key);

}  // namespace RecordSearch

}  // namespace orvane
