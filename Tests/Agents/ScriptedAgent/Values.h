#pragma once

#include <string>
#include <string_view>

namespace orvane::scripted {

/// Placeholders whose values come from outside: {pid}, {home}, {cwd}, {cwd-name}, {cwd-slug}, {env:NAME}, {uuid} (new
/// each time), {time} (ISO 8601), {millis} (since 1970). Empty for any other name.
std::string outsideValue(std::string_view name);

}  // namespace orvane::scripted
