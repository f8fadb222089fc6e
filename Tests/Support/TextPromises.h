#pragma once

#include <algorithm>
#include <string>

#include "OrvaneCore/Support/Text.h"

namespace orvane {

/// Tells `require(holds, promise)` of each thing that must hold of any text, cut at any place.
template <typename Require>
void checkText(std::string_view text, std::size_t cut, const Require& require) {
    const std::size_t count = Text::characterCount(text);
    const std::size_t left = std::min(cut, count);
    const std::string_view prefix = Text::prefix(text, cut);
    const std::string_view rest = Text::suffix(text, count - left);
    require(Text::characterCount(prefix) == left, "a prefix has the characters asked for");
    require(Text::characterCount(rest) == count - left, "a suffix has the characters asked for");
    require(std::string(prefix).append(rest) == text, "prefix and suffix meet");
    const std::string truncated = Text::truncated(text, cut);
    require(Text::characterCount(truncated) <= cut, "a truncated text is no longer than asked for");
    require(count > cut || truncated == text, "a text that fits is not truncated");

    const std::string sanitized = Text::sanitizedUtf8(text);
    require(Text::isValidUtf8(sanitized), "sanitized text is UTF-8");
    require(Text::isValidUtf8(text) == (sanitized == text), "only malformed text is changed");
    require(Text::characterCount(sanitized) == count, "a malformed run counts as its replacement");
    require(Text::displayWidth(sanitized) == Text::displayWidth(text), "a malformed run is as wide as its replacement");
    require(Text::sanitizedUtf8(prefix) == Text::prefix(sanitized, cut), "a malformed run is cut as its replacement");

    const std::string folded = Text::folded(text);
    require(Text::folded(sanitized) == folded, "a malformed run folds as its replacement");
    require(Text::folded(folded) == folded, "folding twice changes nothing");
    require(Text::containsFolded(text, folded), "a text has itself in it");
    require(Text::equalsIgnoringCase(text, Text::caseFolded(text)), "case folding changes case alone");
    require(Text::sanitizedUtf8(Text::caseFolded(text)) == Text::caseFolded(sanitized), "and no malformed run");

    const std::string line = Text::oneLine(text);
    require(Text::isValidUtf8(line) && Text::oneLine(line) == line, "one line stays one line");
    require(Text::oneLine(sanitized) == line, "a malformed run flattens as its replacement");
    require(Text::trimmed(line) == line, "a line has no blanks at its ends");
    require(std::ranges::none_of(line, [](char c) { return static_cast<unsigned char>(c) < 0x20 || c == 0x7F; }),
            "a line has no control characters");
}

}  // namespace orvane
