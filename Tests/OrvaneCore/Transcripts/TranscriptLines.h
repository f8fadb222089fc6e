#pragma once

#include <fstream>
#include <string>
#include <string_view>
#include <vector>

namespace orvane {

/// Lines of a transcript and views of them.
struct TranscriptLines {
    explicit TranscriptLines(std::vector<std::string> lines)
        : lines(std::move(lines)), views(this->lines.begin(), this->lines.end()) {}
    TranscriptLines(const TranscriptLines&) = delete;
    TranscriptLines& operator=(const TranscriptLines&) = delete;

    static std::vector<std::string> recorded(const std::string& name) {
        std::ifstream file(ORVANE_SOURCE_DIR "/Tests/Recordings/Transcripts/" + name + ".jsonl");
        std::vector<std::string> lines;
        for (std::string line; std::getline(file, line);)
            lines.push_back(line);
        return lines;
    }

    std::vector<std::string> lines;
    std::vector<std::string_view> views;
};

}  // namespace orvane
