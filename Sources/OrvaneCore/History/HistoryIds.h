#pragma once

#include <cstddef>
#include <expected>
#include <string_view>
#include <vector>

#include "OrvaneCore/History/SessionRecord.h"
#include "OrvaneCore/Support/IdPrefix.h"

/// The ids of past conversations as people type them: any beginning that means one conversation, in any case. Agents
/// choose their ids, so they are any text.
namespace orvane::HistoryIds {

/// The place of the record. Of copies of one conversation, which have one id, it is the newest.
std::expected<std::size_t, IdPrefix::Error> resolve(std::string_view prefix, const std::vector<SessionRecord>& records);

/// How many leading characters tell each from all others that are not the same; at least `minimum`.
std::size_t distinguishingLength(const std::vector<SessionRecord>& records, std::size_t minimum = 8);

}  // namespace orvane::HistoryIds
