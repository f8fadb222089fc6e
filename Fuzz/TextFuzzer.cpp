#include <algorithm>
#include <string>

#include "Fuzzing.h"
#include "OrvaneCore/Support/Text.h"

using namespace orvane;
using fuzzing::require;

/// The first byte says where to cut the rest.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) return 0;
    const std::string_view text = fuzzing::asText(data + 1, size - 1);
    const std::size_t count = Text::characterCount(text);
    const std::size_t cut = data[0] % (count + 2);
    const std::string_view prefix = Text::prefix(text, cut);
    const std::string_view rest = Text::suffix(text, count - std::min(cut, count));
    require(Text::characterCount(prefix) == std::min(cut, count), "a prefix has the characters asked for");
    require(Text::characterCount(rest) == count - std::min(cut, count), "a suffix has the characters asked for");
    require(std::string(prefix).append(rest) == text, "prefix and suffix meet");
    const std::string truncated = Text::truncated(text, cut);
    require(Text::characterCount(truncated) <= cut, "a truncated text is no longer than asked for");
    require(count > cut || truncated == text, "a text that fits is not truncated");

    const std::string sanitized = Text::sanitizedUtf8(text);
    require(Text::isValidUtf8(sanitized), "sanitized text is UTF-8");
    require(Text::isValidUtf8(text) == (sanitized == text), "only malformed text is changed");
    require(Text::characterCount(sanitized) == count, "a malformed run counts as its replacement");
    require(Text::displayWidth(sanitized) == Text::displayWidth(text), "a malformed run is as wide as its replacement");

    const std::string folded = Text::folded(text);
    require(Text::folded(sanitized) == folded, "a malformed run folds as its replacement");
    require(Text::folded(folded) == folded, "folding twice changes nothing");
    require(Text::containsFolded(text, folded), "a text has itself in it");
    require(Text::equalsIgnoringCase(text, Text::caseFolded(text)), "case folding changes case alone");

    const std::string line = Text::oneLine(text);
    require(Text::isValidUtf8(line) && Text::oneLine(line) == line, "one line stays one line");
    require(Text::trimmed(line) == line, "a line has no blanks at its ends");
    require(std::ranges::none_of(line, [](char c) { return static_cast<unsigned char>(c) < 0x20 || c == 0x7F; }),
            "a line has no control characters");
    return 0;
}
