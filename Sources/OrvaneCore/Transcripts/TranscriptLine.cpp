#include "OrvaneCore/Transcripts/TranscriptLine.h"

#include "OrvaneCore/Support/Needle.h"

namespace orvane::TranscriptLine {

namespace {

/// With the quotes; none when the text that begins there does not end within `edge` bytes.
std::optional<std::string_view> quoted(std::string_view text) {
    text = text.substr(0, edge);
    for (std::size_t at = 1; at < text.size(); ++at) {
        if (text[at] == '"') return text.substr(0, at + 1);
        if (text[at] == '\\') ++at;
    }
    return std::nullopt;
}

std::optional<std::string_view> quotedValue(std::string_view line, std::string_view key) {
    const std::string needle = "\"" + std::string(key) + "\":\"";
    const std::size_t at = Needle(needle).findIn(line);
    return at == std::string_view::npos ? std::nullopt : quoted(line.substr(at + needle.size() - 1));
}

}  // namespace

bool contains(std::string_view line, std::string_view needle) {
    return Needle(needle).findIn(line) != std::string_view::npos;
}

bool headContains(std::string_view line, std::string_view needle) {
    return contains(line.substr(0, edge), needle);
}

bool edgesContain(std::string_view line, std::string_view needle) {
    if (line.size() <= 2 * edge) return contains(line, needle);
    return contains(line.substr(0, edge), needle) || contains(line.substr(line.size() - edge), needle);
}

std::optional<TranscriptRecord> parsed(TranscriptParser& parser, std::string_view line) {
    if (!line.starts_with('{') || line.size() > longestParsed) return std::nullopt;
    auto record = parser.parse(line);
    return record && record->isObject() ? record : std::nullopt;
}

std::optional<std::string_view> scannedWord(std::string_view line, std::string_view key) {
    const auto text = quotedValue(line.substr(0, edge), key);
    return text ? std::optional(text->substr(1, text->size() - 2)) : std::nullopt;
}

std::optional<std::string> scannedString(std::string_view line, std::string_view key) {
    const auto text = quotedValue(line, key);
    if (!text) return std::nullopt;
    TranscriptParser parser;
    const auto value = parser.parse(*text);
    const auto string = value ? value->string() : std::nullopt;
    return string ? std::optional<std::string>(*string) : std::nullopt;
}

}  // namespace orvane::TranscriptLine
