#include "OrvaneCore/Support/Date.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <cstdint>

namespace orvane {

namespace {

constexpr double firstSecond = -62167219200.0;  // 0000-01-01T00:00:00Z
constexpr double lastSecond = 253402300799.0;   // 9999-12-31T23:59:59Z

/// Takes digits off the front of a text; every failure sticks.
class Reader {
 public:
    explicit Reader(std::string_view text) : rest_(text) {}

    int number(std::size_t digits) {
        if (rest_.size() < digits) return fail();
        int value = 0;
        for (const char digit : rest_.substr(0, digits)) {
            if (digit < '0' || digit > '9') return fail();
            value = value * 10 + (digit - '0');
        }
        rest_.remove_prefix(digits);
        return value;
    }

    bool take(char expected) {
        if (rest_.empty() || rest_.front() != expected) return false;
        rest_.remove_prefix(1);
        return true;
    }

    void require(char expected) {
        if (!take(expected)) fail();
    }

    /// The digits after a decimal sign, as a part of one. Adding up tenths and hundredths instead would read .6 as
    /// 0.6000000000000001. Digits that a double cannot hold are dropped.
    double fraction() {
        constexpr double mostDigits = 1e15;
        double value = 0;
        double scale = 1;
        bool any = false;
        while (!rest_.empty() && rest_.front() >= '0' && rest_.front() <= '9') {
            if (scale < mostDigits) {
                value = value * 10 + (rest_.front() - '0');
                scale *= 10;
            }
            any = true;
            rest_.remove_prefix(1);
        }
        if (!any) fail();
        return value / scale;
    }

    bool failed() const { return failed_; }
    bool atEnd() const { return rest_.empty(); }

 private:
    int fail() {
        failed_ = true;
        return 0;
    }

    std::string_view rest_;
    bool failed_ = false;
};

/// Seconds east of UTC named by what follows the time, or none when it is not a zone.
std::optional<int> zoneOffset(Reader& reader) {
    if (reader.atEnd() || reader.take('Z') || reader.take('z')) return 0;
    const bool east = reader.take('+');
    if (!east && !reader.take('-')) return std::nullopt;
    const int hours = reader.number(2);
    reader.take(':');
    const int minutes = reader.number(2);
    if (reader.failed() || hours > 23 || minutes > 59) return std::nullopt;
    return (east ? 1 : -1) * (hours * 3600 + minutes * 60);
}

}  // namespace

std::string Date::iso8601() const {
    using namespace std::chrono;
    const double held = std::isnan(secondsSince1970) ? 0 : std::clamp(secondsSince1970, firstSecond, lastSecond);
    const sys_time<milliseconds> moment{milliseconds(static_cast<std::int64_t>(std::floor(held * 1000 + 0.5)))};
    const auto day = floor<days>(moment);
    const year_month_day date{day};
    const hh_mm_ss time{moment - day};
    return fmt::format("{:04}-{:02}-{:02}T{:02}:{:02}:{:02}.{:03}Z", static_cast<int>(date.year()),
                       static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()), time.hours().count(),
                       time.minutes().count(), time.seconds().count(), time.subseconds().count());
}

std::optional<Date> Date::parseIso8601(std::string_view text) {
    using namespace std::chrono;
    Reader reader(text);
    const year y{reader.number(4)};
    reader.require('-');
    const month m{static_cast<unsigned>(reader.number(2))};
    reader.require('-');
    const day d{static_cast<unsigned>(reader.number(2))};
    if (!reader.take('T') && !reader.take(' ')) return std::nullopt;
    const int hour = reader.number(2);
    reader.require(':');
    const int minute = reader.number(2);
    reader.require(':');
    const int second = reader.number(2);
    const double fraction = reader.take('.') || reader.take(',') ? reader.fraction() : 0;
    const std::optional<int> offset = zoneOffset(reader);
    const year_month_day date{y, m, d};
    if (reader.failed() || !offset || !reader.atEnd() || !date.ok()) return std::nullopt;
    if (hour > 23 || minute > 59 || second > 60) return std::nullopt;  // 60 is a leap second
    const auto dayStart = sys_days(date).time_since_epoch();
    const double whole = static_cast<double>(duration_cast<seconds>(dayStart).count());
    return Date{whole + hour * 3600 + minute * 60 + second + fraction - *offset};
}

}  // namespace orvane
