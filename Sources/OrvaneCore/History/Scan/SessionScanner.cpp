#include "OrvaneCore/History/Scan/SessionScanner.h"

#include <utility>

#include "OrvaneCore/History/Scan/ClaudeScanner.h"
#include "OrvaneCore/History/Scan/CodexScanner.h"
#include "OrvaneCore/History/Scan/GeminiScanner.h"
#include "OrvaneCore/Transcripts/TranscriptLine.h"

namespace orvane {

std::unique_ptr<SessionScanner> SessionScanner::of(TranscriptProvider provider) {
    switch (provider) {
        case TranscriptProvider::claude:
            return std::make_unique<ClaudeScanner>();
        case TranscriptProvider::codex:
            return std::make_unique<CodexScanner>();
        case TranscriptProvider::gemini:
            return std::make_unique<GeminiScanner>();
    }
    std::unreachable();
}

SessionScan SessionScanner::scanned(TranscriptProvider provider, std::span<const std::string_view> head,
                                    std::span<const std::string_view> tail) {
    const auto scanner = of(provider);
    for (const auto& [lines, part] : {std::pair(head, SessionScan::Part::head), {tail, SessionScan::Part::tail}}) {
        for (const std::string_view line : lines) {
            if (line.starts_with('{')) scanner->read(line, part);
        }
    }
    scanner->finish();
    return std::move(scanner->scan_);
}

std::optional<TranscriptRecord> SessionScanner::parsed(std::string_view line) {
    // One a thread: its memory is what costs, and a walk reads a million lines.
    thread_local TranscriptParser parser;
    return line.size() <= TranscriptLine::longestParsed ? parser.parse(line) : std::nullopt;
}

}  // namespace orvane
