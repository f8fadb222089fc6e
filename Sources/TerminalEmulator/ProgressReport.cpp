#include "TerminalEmulator/ProgressReport.h"

#include <algorithm>
#include <charconv>

#include "TerminalEmulator/Engine/PayloadText.h"

namespace orvane {
namespace {

constexpr int mostPercent = 100;

/// A whole number with or without a sign, brought into the range however long it is; nothing for other text.
std::optional<std::uint8_t> percent(std::string_view text) {
    if (text.starts_with('+') && !text.starts_with("+-")) text.remove_prefix(1);
    const bool isNegative = text.starts_with('-');
    int value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error == std::errc::invalid_argument || end != text.data() + text.size()) return std::nullopt;
    if (error == std::errc::result_out_of_range) value = isNegative ? 0 : mostPercent;
    return static_cast<std::uint8_t>(std::clamp(value, 0, mostPercent));
}

bool isAscii(std::string_view text) {
    return std::ranges::all_of(text, [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

}  // namespace

std::optional<ProgressReport> ProgressReport::parse(std::string_view payload) {
    if (!isAscii(payload)) return std::nullopt;
    PayloadText::Parts parts(payload);
    const auto command = parts.next();
    const auto state = parts.next();
    const auto value = parts.next();
    if (command != "4" || !state || state->size() != 1 || state->front() < '0' || state->front() > '4')
        return std::nullopt;

    ProgressReport report{.state = static_cast<ProgressReportState>(state->front() - '0'), .progress = std::nullopt};
    if (value) {
        report.progress = percent(*value);
        if (!report.progress) return std::nullopt;
    }
    if (report.state == ProgressReportState::remove) report.progress.reset();
    if (report.state == ProgressReportState::set && !report.progress) report.progress = 0;
    return report;
}

}  // namespace orvane
