#pragma once

#include <optional>
#include <string>

namespace orvane::scripted {

/// What a scenario does outside its terminal. Folders on the way to a file are made. Each returns what went wrong.
using Failure = std::optional<std::string>;

/// Replaces a file as a whole, so that nobody reads half of it.
[[nodiscard]] Failure writeFile(const std::string& path, const std::string& content);
[[nodiscard]] Failure appendToFile(const std::string& path, const std::string& content);
[[nodiscard]] Failure removeFile(const std::string& path);

/// Runs a line of a shell and waits for its end, at most 10 seconds; what it prints is dropped, and so is its status.
/// An empty line is nothing.
[[nodiscard]] Failure runCommand(const std::string& line, const std::string& input);

}  // namespace orvane::scripted
