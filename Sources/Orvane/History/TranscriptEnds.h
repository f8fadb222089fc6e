#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "OrvaneCore/Support/Date.h"

namespace orvane {

/// The lines at both ends of a transcript, as many as `SessionHistory` looks at. Any thread; kept for the next file, it
/// keeps its memory.
class TranscriptEnds {
 public:
    /// As it was when it was read.
    struct File {
        Date modifiedAt;
        std::int64_t byteSize = 0;
    };

    /// Reads one file, which may grow meanwhile: that is what transcripts do. None when it cannot be read, shrinks or
    /// is replaced by another one.
    std::optional<File> read(const std::string& path);

    /// In file order; a line is in one of the two. The last of the head and the last of the tail may be cut.
    const std::vector<std::string_view>& head() const { return head_; }
    const std::vector<std::string_view>& tail() const { return tail_; }

 private:
    /// Whether as many bytes were there as the size had told.
    bool fill(int file, std::size_t size);
    /// Gives what lies behind the lines that it takes.
    std::string_view splitHead(std::string_view bytes);
    void splitTail(std::string_view bytes);

    std::string bytes_;
    std::size_t headSize_ = 0;  ///< of `bytes_`; what follows is the tail
    std::vector<std::string_view> head_;
    std::vector<std::string_view> tail_;
};

}  // namespace orvane
