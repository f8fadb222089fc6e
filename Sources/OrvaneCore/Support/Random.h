#pragma once

#include <cstdint>
#include <span>

namespace orvane {

/// Fills the bytes from the system's cryptographic random source. Ends the process when there is none: nothing that
/// is named or guarded by a random value could be trusted after that.
void fillRandom(std::span<std::uint8_t> bytes);

}  // namespace orvane
