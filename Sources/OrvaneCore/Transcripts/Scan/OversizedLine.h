#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "OrvaneCore/Support/Date.h"
#include "OrvaneCore/Transcripts/TranscriptLine.h"
#include "OrvaneCore/Transcripts/TranscriptRecord.h"

namespace orvane {

/// A line that is too long to be parsed: an image or the dump of a file. What is wanted of it is found by a scan of its
/// text, near its ends only.
class OversizedLine {
 public:
    static bool isOversized(std::string_view line) { return line.size() > TranscriptLine::longestParsed; }

    /// It looks into the line and the parser, which it uses to decode values.
    OversizedLine(std::string_view line, TranscriptParser& parser);

    std::string_view head() const { return head_; }
    std::string_view tail() const { return tail_; }
    /// The same line; its head begins at the text, when the head holds it.
    OversizedLine from(std::string_view text) const;

    /// The value of the first `"key":"…"` in the head, also where this is JSON inside a JSON string; as it was before
    /// it was encoded, cut at the end of the head.
    std::optional<std::string> value(std::string_view key) const { return value(head_, key); }
    /// As `value`, in the tail when the head has none.
    std::optional<std::string> valueAtEitherEnd(std::string_view key) const;
    std::optional<Date> timestamp() const;

 private:
    std::optional<std::string> value(std::string_view end, std::string_view key) const;
    std::string decoded(std::string_view encoded) const;

    std::string_view head_;
    std::string_view tail_;
    TranscriptParser* parser_;
};

}  // namespace orvane
