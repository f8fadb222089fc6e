#include "OrvaneCore/History/Scan/RawLine.h"

#include "OrvaneCore/Support/Needle.h"
#include "OrvaneCore/Support/Text.h"
#include "OrvaneCore/Transcripts/TranscriptRecord.h"

namespace orvane::RawLine {

namespace {

/// Whether the line ends inside of the escape that begins there.
bool isCutOff(std::string_view text, std::size_t escape) {
    const bool isCodeUnit = escape + 1 < text.size() && text[escape + 1] == 'u';
    constexpr std::size_t codeUnitLength = 6;
    return escape + (isCodeUnit ? codeUnitLength : 2) > text.size();
}

}  // namespace

std::optional<std::string_view> escapedText(std::string_view line, std::string_view opening) {
    const auto found = Needle(opening).findIn(line);
    if (found == std::string_view::npos) return std::nullopt;
    const std::string_view rest = line.substr(found + opening.size());
    std::size_t escape = rest.size();
    // Ids and times are short: `find_first_of` costs more than the loop.
    for (std::size_t at = 0; at < rest.size(); ++at) {
        if (rest[at] == '"') return rest.substr(0, at);
        if (rest[at] == '\\') escape = at++;
    }
    return isCutOff(rest, escape) ? rest.substr(0, escape) : rest;
}

std::optional<std::string> text(std::string_view line, std::string_view opening) {
    const auto escaped = escapedText(line, opening);
    if (!escaped) return std::nullopt;
    if (!escaped->contains('\\')) return Text::sanitizedUtf8(*escaped);
    TranscriptParser parser;
    const auto value = parser.parse('"' + std::string(*escaped) + '"');
    const auto decoded = value ? value->string() : std::nullopt;
    return decoded ? std::optional<std::string>(*decoded) : std::nullopt;
}

std::optional<Date> timestamp(std::string_view line) {
    const auto found = escapedText(line, R"("timestamp":")");
    return found ? Date::parseIso8601(*found) : std::nullopt;
}

}  // namespace orvane::RawLine
