#pragma once

#include <optional>
#include <string_view>

#include "OrvaneCore/Support/Calendar.h"

/// Bounds of a search as people type them.
namespace orvane::HistoryDates {

enum class Bound { since, until };

/// "2026-11-21" (the whole day, in the calendar's zone), "2026-11-21T09:30:00Z", or a time back from now: "90m", "12h",
/// "2d", "3w". None for anything else.
std::optional<Date> parse(std::string_view text, Bound bound, Date now, const Calendar& calendar);

}  // namespace orvane::HistoryDates
