#pragma once

#include <expected>
#include <string>
#include <string_view>

namespace orvane::TypedBytes {

/// What a person writes for bytes that a keyboard sends: "\r", "\n", "\t", "\e", "\\" and "\xHH" stand for one byte
/// each, all else for itself. The error is the part that is not understood.
std::expected<std::string, std::string> parse(std::string_view text);

/// The same for any bytes, as text that `parse` gives back.
std::string write(std::string_view bytes);

}  // namespace orvane::TypedBytes
