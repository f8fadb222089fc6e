#include "OrvaneCore/Support/Random.h"

#include <openssl/rand.h>

#include <cstdlib>

namespace orvane {

void fillRandom(std::span<std::uint8_t> bytes) {
    if (RAND_bytes(bytes.data(), static_cast<int>(bytes.size())) != 1) std::abort();
}

}  // namespace orvane
