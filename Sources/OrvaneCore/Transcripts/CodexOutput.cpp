#include "OrvaneCore/Transcripts/CodexOutput.h"

#include <algorithm>
#include <charconv>

#include "OrvaneCore/Transcripts/Scan/TranscriptText.h"

namespace orvane {

namespace {

constexpr std::string_view exitMarker = "exited with code ";
constexpr std::string_view bodyMarker = "\nOutput:\n";

CodexOutput ofRecord(const TranscriptRecord& record) {
    const auto code = record["metadata"].integer("exit_code");
    return {.hasFailed = code.value_or(0) != 0, .body = TranscriptText::joined(record["output"], "\n")};
}

/// The heading ends where the output begins, so that a program which prints the marker does not fail by it.
CodexOutput ofText(std::string_view text) {
    const std::size_t boundary = text.find(bodyMarker);
    const std::string_view heading = text.substr(0, boundary);
    CodexOutput output{.hasFailed = CodexOutput::exitCode(heading).value_or(0) > 0, .body = {}};
    if (boundary != std::string_view::npos) {
        output.body = text.substr(boundary + bodyMarker.size());
    } else if (const std::size_t at = text.find(exitMarker); at != std::string_view::npos) {
        const std::string_view rest = text.substr(at + exitMarker.size());
        output.body = rest.substr(std::min(rest.find_first_not_of("0123456789"), rest.size()));
    } else {
        output.body = text;
    }
    return output;
}

}  // namespace

CodexOutput CodexOutput::read(const TranscriptRecord& output, TranscriptParser& inner) {
    if (output.isObject()) return ofRecord(output);
    const std::string text = TranscriptText::joined(output, "\n");
    if (text.starts_with('{')) {
        const auto parsed = inner.parse(text);
        if (parsed && parsed->contains("output")) return ofRecord(*parsed);
    }
    return ofText(text);
}

std::optional<long> CodexOutput::exitCode(std::string_view text) {
    constexpr std::size_t mostDigits = 9;
    const std::size_t at = text.find(exitMarker);
    if (at == std::string_view::npos) return std::nullopt;
    const std::string_view digits = text.substr(at + exitMarker.size(), mostDigits);
    long code = 0;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), code);
    return error == std::errc() ? std::optional(code) : std::nullopt;
}

}  // namespace orvane
