#include "OrvaneCore/Transcripts/Scan/TranscriptText.h"

#include <algorithm>
#include <chrono>

#include "OrvaneCore/Support/Text.h"

namespace orvane::TranscriptText {

namespace {

std::string_view withoutLeadingSpace(std::string_view text) {
    const std::string_view trimmed = Text::trimmed(text);
    if (trimmed.empty()) return {};
    return text.substr(static_cast<std::size_t>(trimmed.data() - text.data()));
}

std::optional<int> number(std::string_view text, std::size_t at, std::size_t digits) {
    int value = 0;
    for (const char digit : text.substr(at, digits)) {
        if (digit < '0' || digit > '9') return std::nullopt;
        value = value * 10 + (digit - '0');
    }
    return value;
}

}  // namespace

std::string message(std::string_view text) {
    const std::string_view begun = withoutLeadingSpace(text);
    const std::string_view kept = Text::prefix(begun, maximumMessage);
    const std::string_view trimmed = Text::trimmed(kept);
    if (Text::isValidUtf8(trimmed) && kept.size() == begun.size()) return std::string(trimmed);
    return Text::sanitizedUtf8(trimmed) + (kept.size() < begun.size() ? "…" : "");
}

std::string oneLine(std::string_view text) {
    constexpr std::string_view blanks = " \n\r\t";
    std::string line;
    for (std::size_t at = text.find_first_not_of(blanks); at != std::string_view::npos;) {
        const std::size_t end = std::min(text.find_first_of(blanks, at), text.size());
        if (!line.empty()) line += ' ';
        line += text.substr(at, end - at);
        at = text.find_first_not_of(blanks, end);
    }
    return line;
}

std::string detail(std::string_view text) {
    return std::string(Text::prefix(oneLine(text), maximumDetail));
}

std::optional<Date> timestamp(std::string_view text) {
    constexpr std::size_t length = 19;
    if (text.size() < length) return std::nullopt;
    const auto year = number(text, 0, 4);
    const auto month = number(text, 5, 2);
    const auto day = number(text, 8, 2);
    const auto hour = number(text, 11, 2);
    const auto minute = number(text, 14, 2);
    const auto second = number(text, 17, 2);
    if (!year || !month || !day || !hour || !minute || !second) return std::nullopt;
    if (*month < 1 || *month > 12 || *day < 1 || *day > 31) return std::nullopt;
    const std::chrono::year_month_day date{std::chrono::year(*year), std::chrono::month(static_cast<unsigned>(*month)),
                                           std::chrono::day(static_cast<unsigned>(*day))};
    const auto days = std::chrono::sys_days(date).time_since_epoch().count();
    return Date{static_cast<double>(days) * 86400 + *hour * 3600 + *minute * 60 + *second};
}

std::string joined(const TranscriptRecord& content, std::string_view separator) {
    if (const auto text = content.string()) return std::string(*text);
    std::string all;
    for (const TranscriptRecord& element : content.elements()) {
        const auto text = element.isString() ? element.string() : element.string("text");
        if (!text) continue;
        if (!all.empty()) all += separator;
        all += *text;
    }
    return all;
}

std::optional<std::string_view> between(std::string_view text, std::string_view open, std::string_view close) {
    const std::size_t begin = text.find(open);
    if (begin == std::string_view::npos) return std::nullopt;
    const std::string_view rest = text.substr(begin + open.size());
    const std::size_t end = rest.find(close);
    return end == std::string_view::npos ? std::nullopt : std::optional(rest.substr(0, end));
}

}  // namespace orvane::TranscriptText
