#include "OrvaneCore/History/HistoryDates.h"

#include <charconv>

#include "OrvaneCore/Support/Text.h"

namespace orvane::HistoryDates {

namespace {

std::optional<double> secondsOf(char unit) {
    switch (unit) {
        case 'm':
            return 60;
        case 'h':
            return 3600;
        case 'd':
            return 86400;
        case 'w':
            return 7 * 86400;
        default:
            return std::nullopt;
    }
}

/// A time back from now, in seconds.
std::optional<double> span(std::string_view text) {
    if (text.size() < 2) return std::nullopt;
    unsigned number = 0;
    const char* const end = text.data() + text.size() - 1;
    const auto [read, error] = std::from_chars(text.data(), end, number);
    const auto unit = secondsOf(text.back());
    return error == std::errc() && read == end && unit ? std::optional(number * *unit) : std::nullopt;
}

}  // namespace

std::optional<Date> parse(std::string_view text, Bound bound, Date now, const Calendar& calendar) {
    text = Text::trimmed(text);
    if (const auto seconds = span(text)) return now - Seconds(*seconds);
    if (const auto day = calendar.parseDay(text)) {
        constexpr Seconds grain(0.001);
        return bound == Bound::since ? *day : calendar.startOfDay(*day, 1) - grain;
    }
    return Date::parseIso8601(text);
}

}  // namespace orvane::HistoryDates
