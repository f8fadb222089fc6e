#pragma once

#include <optional>
#include <string>
#include <string_view>

/// Base64 with the standard alphabet (RFC 4648, section 4).
namespace orvane::Base64 {

std::string encode(std::string_view bytes);

/// Padding may be missing, whole or in part. Nothing for anything else that is not Base64.
std::optional<std::string> decode(std::string_view text);

}  // namespace orvane::Base64
