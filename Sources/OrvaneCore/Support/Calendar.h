#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "OrvaneCore/Support/Date.h"

namespace orvane {

/// The days of a time zone, in the Gregorian calendar. One thread at a time.
class Calendar {
 public:
    /// A name of the time zone database such as "Europe/Paris"; a name that nobody knows counts as UTC.
    explicit Calendar(std::string_view timeZone);
    Calendar(const Calendar& other);
    Calendar(Calendar&& other) noexcept;
    Calendar& operator=(const Calendar&) = delete;
    ~Calendar();

    const std::string& timeZone() const { return timeZone_; }

    /// The first moment of the day that the date is in.
    Date startOfDay(Date date) const;
    /// The same for the day that lies so many days after it, or before it.
    Date startOfDay(Date date, int daysLater) const;
    /// The first moment of "2026-11-21"; none for what is no such day.
    std::optional<Date> parseDay(std::string_view text) const;

    /// What calendar and clock show at a moment: "2026-11-21" and "09:30".
    struct Reading {
        std::string day;
        std::string time;
    };
    Reading reading(Date date) const;

 private:
    struct Fields;

    std::string timeZone_;
    std::unique_ptr<Fields> fields_;
};

}  // namespace orvane
