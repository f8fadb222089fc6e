#include "Fuzzing.h"
#include "Support/TextPromises.h"

/// The first byte says where to cut the rest.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) return 0;
    const std::string_view text = orvane::fuzzing::asText(data + 1, size - 1);
    orvane::checkText(text, data[0] % (orvane::Text::characterCount(text) + 2), orvane::fuzzing::require);
    return 0;
}
