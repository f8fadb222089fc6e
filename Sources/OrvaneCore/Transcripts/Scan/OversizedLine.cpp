#include "OrvaneCore/Transcripts/Scan/OversizedLine.h"

#include "OrvaneCore/Support/Text.h"
#include "OrvaneCore/Transcripts/Scan/TranscriptText.h"

namespace orvane {

namespace {

/// Up to the quote that ends the string, which is one behind exactly `backslashes` of them; all when it is cut.
std::string_view untilQuote(std::string_view text, std::size_t backslashes) {
    std::size_t run = 0;
    for (std::size_t at = 0; at < text.size(); ++at) {
        // An odd number more than the string's own belongs to a quote that is part of the value.
        if (text[at] == '"' && run % (2 * (backslashes + 1)) == backslashes) return text.substr(0, at - backslashes);
        run = text[at] == '\\' ? run + 1 : 0;
    }
    return text;
}

}  // namespace

OversizedLine::OversizedLine(std::string_view line, TranscriptParser& parser)
    : head_(line.substr(0, TranscriptLine::edge)),
      tail_(line.size() > TranscriptLine::edge ? line.substr(line.size() - TranscriptLine::edge) : line),
      parser_(&parser) {}

OversizedLine OversizedLine::from(std::string_view text) const {
    OversizedLine later = *this;
    const std::size_t at = head_.find(text);
    if (at != std::string_view::npos) later.head_.remove_prefix(at);
    return later;
}

std::optional<std::string> OversizedLine::valueAtEitherEnd(std::string_view key) const {
    std::optional<std::string> found = value(head_, key);
    return found ? found : value(tail_, key);
}

std::optional<Date> OversizedLine::timestamp() const {
    const std::optional<std::string> text = valueAtEitherEnd("timestamp");
    return text ? TranscriptText::timestamp(*text) : std::nullopt;
}

std::optional<std::string> OversizedLine::value(std::string_view end, std::string_view key) const {
    const std::string plain = "\"" + std::string(key) + "\":\"";
    if (const std::size_t at = end.find(plain); at != std::string_view::npos)
        return decoded(untilQuote(end.substr(at + plain.size()), 0));
    const std::string nested = "\\\"" + std::string(key) + "\\\":\\\"";
    if (const std::size_t at = end.find(nested); at != std::string_view::npos)
        return decoded(decoded(untilQuote(end.substr(at + nested.size()), 1)));
    return std::nullopt;
}

std::string OversizedLine::decoded(std::string_view encoded) const {
    constexpr std::size_t longestEscape = 6;  // "\uXXXX", which the cut may have halved
    for (std::size_t dropped = 0; dropped < longestEscape && dropped <= encoded.size(); ++dropped) {
        const std::string quoted = "\"" + std::string(encoded.substr(0, encoded.size() - dropped)) + "\"";
        const auto record = parser_->parse(quoted);
        if (record && record->isString()) return std::string(*record->string());
    }
    return Text::sanitizedUtf8(encoded);
}

}  // namespace orvane
