#pragma once

#include <cstddef>
#include <random>
#include <string>

#include "OrvaneCore/Transcripts/TranscriptProvider.h"

namespace orvane::benchmark {

/// Conversations that were never held, in the agents' formats and with their proportions: most bytes are results of
/// tools, from a line to a whole file, and now and then an image too long to be parsed.
class MadeTranscript {
 public:
    explicit MadeTranscript(TranscriptProvider provider) : provider_(provider) {}

    /// The lines of the next turn, each with its line end.
    std::string nextTurn();
    std::size_t turns() const { return turns_; }

 private:
    std::string claudeTurn();
    std::string codexTurn();
    std::string geminiTurn();
    std::string words(std::size_t bytes);
    std::string toolOutput();
    std::string head();

    TranscriptProvider provider_;
    std::mt19937 random_{1};
    std::size_t turns_ = 0;
    std::size_t lines_ = 0;
};

}  // namespace orvane::benchmark
