#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace orvane {

enum class ProgressReportState : std::uint8_t { remove = 0, set = 1, error = 2, indeterminate = 3, pause = 4 };

/// How far a program says its work is: OSC 9 ; 4 ; state ; percent.
struct ProgressReport {
    ProgressReportState state = ProgressReportState::remove;
    std::optional<std::uint8_t> progress;  ///< percent, 0 to 100

    /// Of what follows "9;" in the command. Nothing when it is no progress report, for OSC 9 also carries
    /// notifications.
    static std::optional<ProgressReport> parse(std::string_view payload);

    bool operator==(const ProgressReport&) const = default;
};

}  // namespace orvane
