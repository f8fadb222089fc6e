#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace orvane::Hex {

/// Two upper-case digits a byte.
std::string encode(std::string_view bytes);

/// Digits in either case; nothing for an odd number of them or other characters.
std::optional<std::string> decode(std::string_view digits);

}  // namespace orvane::Hex
