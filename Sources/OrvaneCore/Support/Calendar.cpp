#include "OrvaneCore/Support/Calendar.h"

#include <fmt/format.h>
#include <unicode/gregocal.h>
#include <unicode/timezone.h>

#include <charconv>
#include <limits>

namespace orvane {

namespace {

constexpr double millisecondsPerSecond = 1000;

std::unique_ptr<icu::TimeZone> zoneNamed(std::string_view name) {
    const auto length = static_cast<std::int32_t>(std::min<std::size_t>(name.size(), 256));
    return std::unique_ptr<icu::TimeZone>(
        icu::TimeZone::createTimeZone(icu::UnicodeString::fromUTF8({name.data(), length})));
}

/// `digits` decimal digits at the beginning of the text.
std::optional<int> number(std::string_view text, std::size_t digits) {
    if (text.size() < digits || text.front() == '-') return std::nullopt;
    int value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + digits, value);
    return error == std::errc() && end == text.data() + digits ? std::optional(value) : std::nullopt;
}

}  // namespace

struct Calendar::Fields {
    explicit Fields(std::string_view timeZone) : calendar(zoneNamed(timeZone).release(), status) {
        calendar.setLenient(0);
    }

    UErrorCode status = U_ZERO_ERROR;
    icu::GregorianCalendar calendar;
};

Calendar::Calendar(std::string_view timeZone) : timeZone_(timeZone), fields_(std::make_unique<Fields>(timeZone)) {}
Calendar::Calendar(const Calendar& other) : Calendar(other.timeZone_) {}
Calendar::Calendar(Calendar&& other) noexcept = default;
Calendar::~Calendar() = default;

Date Calendar::startOfDay(Date date) const {
    return startOfDay(date, 0);
}

Date Calendar::startOfDay(Date date, int daysLater) const {
    UErrorCode status = U_ZERO_ERROR;
    icu::GregorianCalendar& calendar = fields_->calendar;
    calendar.setTime(date.secondsSince1970 * millisecondsPerSecond, status);
    calendar.add(UCAL_DATE, daysLater, status);
    // Lenient, for there are days whose midnight the clocks skip.
    calendar.setLenient(1);
    for (const UCalendarDateFields field : {UCAL_HOUR_OF_DAY, UCAL_MINUTE, UCAL_SECOND, UCAL_MILLISECOND})
        calendar.set(field, 0);
    const double start = calendar.getTime(status);
    calendar.setLenient(0);
    return U_SUCCESS(status) ? Date{start / millisecondsPerSecond} : date;
}

std::optional<Date> Calendar::parseDay(std::string_view text) const {
    constexpr std::size_t length = 10;
    if (text.size() != length || text[4] != '-' || text[7] != '-') return std::nullopt;
    const auto year = number(text, 4);
    const auto month = number(text.substr(5), 2);
    const auto day = number(text.substr(8), 2);
    if (!year || !month || !day) return std::nullopt;
    UErrorCode status = U_ZERO_ERROR;
    icu::GregorianCalendar& calendar = fields_->calendar;
    calendar.clear();
    calendar.set(*year, *month - 1, *day, 12, 0);
    const double noon = calendar.getTime(status);
    if (U_FAILURE(status) || *year == 0) return std::nullopt;
    return startOfDay({noon / millisecondsPerSecond});
}

Calendar::Reading Calendar::reading(Date date) const {
    UErrorCode status = U_ZERO_ERROR;
    icu::GregorianCalendar& calendar = fields_->calendar;
    calendar.setTime(date.secondsSince1970 * millisecondsPerSecond, status);
    const auto field = [&](UCalendarDateFields name) { return calendar.get(name, status); };
    return {.day = fmt::format("{:04}-{:02}-{:02}", field(UCAL_YEAR), field(UCAL_MONTH) + 1, field(UCAL_DATE)),
            .time = fmt::format("{:02}:{:02}", field(UCAL_HOUR_OF_DAY), field(UCAL_MINUTE))};
}

}  // namespace orvane
