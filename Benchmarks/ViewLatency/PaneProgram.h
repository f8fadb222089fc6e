#pragma once

#include <string>
#include <string_view>

/// What runs in the panes: this executable once more.
namespace orvane::benchmark::PaneProgram {

/// Answers each key with a mark of its own, at once.
inline constexpr std::string_view echo = "echo";
/// Writes numbered lines in many colours as fast as they are taken.
inline constexpr std::string_view lines = "lines";

/// The option of this executable that names one of them.
inline constexpr std::string_view option = "--pane";

/// For a shell: becomes the program.
std::string command(std::string_view name);
/// Runs the program until its terminal is gone. The exit status.
int run(std::string_view name);

/// What the echo shows before the first key.
std::string readyMark();
/// What it shows for a key, counted from 0: three bytes of UTF-8 and one column, in nobody's frame, title or sequence.
/// Hundreds of keys pass before one comes again, and it has long been wiped off the line by then.
std::string mark(std::size_t key);

}  // namespace orvane::benchmark::PaneProgram
