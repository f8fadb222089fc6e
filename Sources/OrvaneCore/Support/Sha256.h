#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

namespace orvane {

using Sha256Digest = std::array<std::uint8_t, 32>;

Sha256Digest sha256(std::string_view bytes);

/// The digest as 64 hexadecimal digits in lower case.
std::string sha256Hex(std::string_view bytes);

}  // namespace orvane
