#include <vector>

#include "Fuzzing.h"
#include "TerminalEmulator/Parser/EscapeSequenceParser.h"
#include "TerminalEmulator/Parser/ParserLog.h"
#include "TerminalEmulator/Unicode/Utf8Decoder.h"

namespace {

using namespace orvane;

std::u32string decoded(const std::vector<std::string_view>& pieces) {
    Utf8Decoder decoder;
    std::u32string scalars;
    for (const std::string_view piece : pieces)
        decoder.decode(piece, [&](char32_t scalar) { scalars += scalar; });
    return scalars;
}

}  // namespace

/// The first byte says how many of those behind it are the lengths of the pieces that the rest comes in.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::string_view input = fuzzing::asText(data, size);
    if (input.empty()) return 0;
    const std::string_view lengths = input.substr(1, static_cast<unsigned char>(input.front()) % 16);
    input.remove_prefix(1 + lengths.size());
    std::vector<std::string_view> pieces;
    std::string_view rest = input;
    for (const char length : lengths) {
        pieces.push_back(rest.substr(0, static_cast<unsigned char>(length)));
        rest.remove_prefix(pieces.back().size());
    }
    pieces.push_back(rest);
    const ParserLog whole({input});
    fuzzing::require(whole.brokenPromises.empty(), "text begins with as many plain bytes as is said");
    fuzzing::require(ParserLog(pieces).events == whole.events, "any cut makes the same calls");
    fuzzing::require(decoded(pieces) == decoded({input}), "any cut gives the same characters");
    return 0;
}
