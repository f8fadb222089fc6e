#pragma once

#include <cstddef>
#include <random>
#include <string>
#include <vector>

namespace orvane::benchmark {

/// Transcripts below a home folder, always the same: prompts, answers and the results of tools, as agents write them.
/// Only both ends are written; what lies between is a hole.
class MadeTranscripts {
 public:
    MadeTranscripts(std::string home, std::size_t count, std::size_t fileSize);

    const std::string& home() const { return home_; }
    std::size_t count() const { return paths_.size(); }
    /// So that the next reading comes from the disk.
    void dropFromCache() const;
    /// A line more in one of them.
    void growOne();

 private:
    std::string words(std::size_t count);
    std::string identifier();
    std::string line();
    std::string lines(std::size_t size);
    void make(const std::string& path, std::size_t number, std::size_t fileSize);

    std::string home_;
    std::vector<std::string> paths_;
    std::mt19937_64 random_{20261121};
};

}  // namespace orvane::benchmark
