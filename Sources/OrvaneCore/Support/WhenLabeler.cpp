#include "OrvaneCore/Support/WhenLabeler.h"

#include <unicode/smpdtfmt.h>

namespace orvane {

namespace {

icu::Locale localeOf(Language language) {
    return language == Language::zhHans ? icu::Locale("zh", "Hans")
                                        : icu::Locale(std::string(rawValue(language)).c_str());
}

/// A format of one pattern. None where the data of the library lacks the language, which then reads as no text.
class Format {
 public:
    Format(const char* pattern, const icu::Locale& locale, const std::string& timeZone)
        : format_(icu::UnicodeString::fromUTF8(pattern), locale, status_) {
        format_.adoptTimeZone(icu::TimeZone::createTimeZone(icu::UnicodeString::fromUTF8(timeZone)));
    }

    std::string text(Date date) const {
        icu::UnicodeString formatted;
        std::string result;
        if (U_SUCCESS(status_)) format_.format(date.secondsSince1970 * 1000, formatted).toUTF8String(result);
        return result;
    }

 private:
    UErrorCode status_ = U_ZERO_ERROR;
    icu::SimpleDateFormat format_;
};

}  // namespace

struct WhenLabeler::Formats {
    Formats(const icu::Locale& locale, const std::string& timeZone)
        : time("HH:mm", locale, timeZone), weekday("EEEE", locale, timeZone), day("d MMM", locale, timeZone) {}

    Format time;
    Format weekday;
    Format day;
};

WhenLabeler::WhenLabeler(Language language, const Calendar& calendar, Date now)
    : today_(calendar.startOfDay(now)),
      tomorrow_(calendar.startOfDay(now, 1)),
      weekBefore_(calendar.startOfDay(now, -6)),
      formats_(std::make_unique<Formats>(localeOf(language), calendar.timeZone())) {}

WhenLabeler::~WhenLabeler() = default;

std::string WhenLabeler::label(Date date) const {
    if (date >= tomorrow_ || date < weekBefore_) return formats_->day.text(date);
    return date >= today_ ? formats_->time.text(date) : formats_->weekday.text(date);
}

}  // namespace orvane
