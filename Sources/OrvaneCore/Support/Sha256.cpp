#include "OrvaneCore/Support/Sha256.h"

#include <fmt/format.h>
#include <openssl/sha.h>

#include <iterator>

namespace orvane {

Sha256Digest sha256(std::string_view bytes) {
    Sha256Digest digest{};
    SHA256(reinterpret_cast<const unsigned char*>(bytes.data()), bytes.size(), digest.data());
    return digest;
}

std::string sha256Hex(std::string_view bytes) {
    std::string text;
    for (const std::uint8_t byte : sha256(bytes))
        fmt::format_to(std::back_inserter(text), "{:02x}", byte);
    return text;
}

}  // namespace orvane
