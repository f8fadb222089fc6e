#pragma once

#include <sys/types.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "OrvaneCore/Support/Date.h"
#include "Platform/FileDescriptor.h"

namespace orvane {

/// The newest lines of a file that somebody else appends to. A check reads what was added since the last one, however
/// long the file is, and at most `keptBytes`. The file is read, not mapped: one that shrinks under a map ends the
/// process. Blocks; one thread at a time.
class TranscriptTail {
 public:
    /// Of the end of the file. A line that is longer, the dump of a picture, is left out.
    static constexpr std::size_t keptBytes = std::size_t{512} << 10;

    enum class Change {
        none,
        grown,     ///< whole lines were added
        replaced,  ///< it is another file, or was cut: what is kept was read anew
        gone,      ///< it cannot be read; what was kept stays
    };

    explicit TranscriptTail(std::string path) : path_(std::move(path)) {}

    const std::string& path() const { return path_; }
    Change check();
    /// Those that end in a newline, until the next check.
    std::vector<std::string_view> lines() const;
    /// Bytes of the file at the last check, and when it was last written to before that.
    std::uint64_t size() const { return size_; }
    Date modifiedAt() const { return {static_cast<double>(modifiedAt_) / 1e9}; }
    /// All bytes that the checks have read so far.
    std::uint64_t bytesRead() const { return bytesRead_; }

 private:
    struct Identity {
        dev_t device = 0;
        ino_t number = 0;
        bool operator==(const Identity&) const = default;
    };

    void startAt(std::uint64_t offset);
    bool readTo(const FileDescriptor& file, std::uint64_t end);
    void forgetOldest();

    std::string path_;
    Identity identity_;
    std::int64_t modifiedAt_ = 0;  ///< nanoseconds since 1970
    std::uint64_t size_ = 0;
    std::uint64_t offset_ = 0;  ///< up to where the file was read
    std::string kept_;
    bool startsInsideLine_ = false;
    std::uint64_t bytesRead_ = 0;
};

}  // namespace orvane
