#pragma once

#include <fstream>
#include <string>
#include <string_view>
#include <vector>

namespace orvane {

/// Lines of a transcript, of which readers take views.
struct TranscriptLines {
    explicit TranscriptLines(std::vector<std::string> theLines) : text(std::move(theLines)) {
        lines.assign(text.begin(), text.end());
    }
    TranscriptLines(const TranscriptLines&) = delete;
    TranscriptLines& operator=(const TranscriptLines&) = delete;
    ~TranscriptLines() = default;

    std::vector<std::string> text;
    std::vector<std::string_view> lines;
};

/// The lines of a file below Tests/Recordings/Transcripts, named with its extension.
inline std::vector<std::string> recordedTranscript(const std::string& name) {
    std::ifstream file(std::string(ORVANE_SOURCE_DIR) + "/Tests/Recordings/Transcripts/" + name);
    std::vector<std::string> lines;
    for (std::string line; std::getline(file, line);)
        lines.push_back(line);
    return lines;
}

}  // namespace orvane
