#include "OrvaneCore/Support/SpanText.h"

#include <algorithm>
#include <cmath>

namespace orvane {

std::string spanText(const L10n& l10n, Seconds span) {
    constexpr double minute = 60;
    constexpr double hour = 60 * minute;
    const double seconds = std::max(0.0, span.count());
    if (seconds < minute) return l10n.text("age.seconds", std::lround(seconds));
    if (seconds < hour) return l10n.text("age.minutes", std::lround(seconds / minute));
    return l10n.text("age.hours", std::lround(seconds / hour));
}

}  // namespace orvane
