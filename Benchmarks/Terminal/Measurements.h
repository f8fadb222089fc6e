#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "Support/Failure.h"
#include "Terminal/Settings.h"

/// The questions of terminal-bench. Each prints its answer, and fails when a result is wrong, for then its time means
/// nothing.
namespace orvane::benchmark {

/// What goes by a name of its own beside workloads and pathological inputs.
namespace Question {
inline constexpr std::string_view memory = "memory";
inline constexpr std::string_view reflow = "reflow";
inline constexpr std::string_view resizes = "resizes with a full history";
}  // namespace Question

/// The workloads against the peer and against a scan for control bytes.
[[nodiscard]] Measured<void> comparePeers(const Settings& settings, Geometry geometry);

/// How many times longer ten times the input takes.
void measureLinearCost(const Settings& settings);

/// Bytes a line of the history and a cell of the screen.
[[nodiscard]] Measured<void> measureMemory(const Settings& settings);

/// Milliseconds of a change of size with a long history.
[[nodiscard]] Measured<void> measureReflow(const Settings& settings);

/// Feeds the files, and prints a line for each: "orvane", "host", geometry, file name, and of the processor time the
/// median and the best MB/s, of the wall time the median MB/s, set apart by tabs. A file that cannot be read is told,
/// the others are measured, and it fails.
[[nodiscard]] Measured<void> measureFiles(const Settings& settings, const std::vector<std::string>& paths);

}  // namespace orvane::benchmark
