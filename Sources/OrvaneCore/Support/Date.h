#pragma once

#include <chrono>
#include <compare>
#include <optional>
#include <string>
#include <string_view>

namespace orvane {

/// A length of time in seconds.
using Seconds = std::chrono::duration<double>;

/// A moment, as seconds since 1970-01-01 00:00:00 UTC. The core never asks for the time: a date is always passed in.
struct Date {
    double secondsSince1970 = 0;

    auto operator<=>(const Date&) const = default;

    friend Date operator+(Date date, Seconds span) { return {date.secondsSince1970 + span.count()}; }
    friend Date operator-(Date date, Seconds span) { return {date.secondsSince1970 - span.count()}; }
    friend Seconds operator-(Date later, Date earlier) {
        return Seconds(later.secondsSince1970 - earlier.secondsSince1970);
    }

    /// ISO 8601 in UTC with milliseconds, "2026-11-21T09:30:00.250Z". Years outside 0 to 9999 are held at the edge.
    std::string iso8601() const;

    /// Reads "2026-11-21T09:30:00", with an optional fraction and an optional "Z" or "+02:00"; without a zone the
    /// text is taken as UTC. Anything else is none.
    static std::optional<Date> parseIso8601(std::string_view text);
};

}  // namespace orvane
