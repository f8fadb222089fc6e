#include "Orvane/History/TranscriptEnds.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <cstring>

#include "Orvane/History/FileTimes.h"
#include "OrvaneCore/History/SessionHistory.h"
#include "Platform/FileDescriptor.h"
#include "Platform/Uninterrupted.h"

namespace orvane {

namespace {

using SessionHistory::headByteCap;
using SessionHistory::headLineCap;
using SessionHistory::tailByteCap;
using SessionHistory::tailLineCap;

/// By reads: a mapped file that shrinks kills whoever looks at it.
bool readAt(int file, std::size_t offset, char* into, std::size_t count) {
    while (count > 0) {
        const ssize_t got = uninterrupted([&] { return pread(file, into, count, static_cast<off_t>(offset)); });
        if (got <= 0) return false;
        into += got;
        offset += static_cast<std::size_t>(got);
        count -= static_cast<std::size_t>(got);
    }
    return true;
}

/// Whether the path still names the file, and no byte that was there is gone.
bool isUnchanged(const std::string& path, const struct stat& before) {
    struct stat after{};
    return stat(path.c_str(), &after) == 0 && after.st_ino == before.st_ino && after.st_dev == before.st_dev &&
           after.st_size >= before.st_size;
}

/// The first line of a tail began before it.
std::string_view withoutFirstLine(std::string_view bytes) {
    return bytes.substr(std::min(bytes.find('\n'), bytes.size()));
}

}  // namespace

std::optional<TranscriptEnds::File> TranscriptEnds::read(const std::string& path) {
    head_.clear();
    tail_.clear();
    const FileDescriptor file(
        uninterrupted([&] { return open(path.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC); }));
    struct stat status{};
    if (!file.isOpen() || fstat(file.number(), &status) != 0 || !S_ISREG(status.st_mode)) return std::nullopt;
    const auto size = static_cast<std::size_t>(status.st_size);
    if (!fill(file.number(), size) || !isUnchanged(path, status)) return std::nullopt;
    const std::string_view bytes = bytes_;
    const std::string_view rest = splitHead(bytes.substr(0, headSize_));
    const bool isWhole = headSize_ == bytes.size();
    splitTail(isWhole ? rest : withoutFirstLine(bytes.substr(headSize_)));
    return File{.modifiedAt = modificationTime(status), .byteSize = status.st_size};
}

bool TranscriptEnds::fill(int file, std::size_t size) {
    const bool isWhole = size <= headByteCap + tailByteCap;
    headSize_ = isWhole ? size : headByteCap;
    const std::size_t tailSize = isWhole ? 0 : tailByteCap;
    bytes_.resize(headSize_ + tailSize);
    // Reading ahead would bring in the middle, which nobody asks for.
    if (!isWhole) posix_fadvise(file, 0, 0, POSIX_FADV_RANDOM);
    return readAt(file, 0, bytes_.data(), headSize_) &&
           readAt(file, size - tailSize, bytes_.data() + headSize_, tailSize);
}

std::string_view TranscriptEnds::splitHead(std::string_view bytes) {
    while (!bytes.empty() && head_.size() < headLineCap) {
        const std::size_t end = std::min(bytes.find('\n'), bytes.size());
        head_.push_back(bytes.substr(0, end));
        bytes.remove_prefix(std::min(end + 1, bytes.size()));
    }
    return bytes;
}

void TranscriptEnds::splitTail(std::string_view bytes) {
    if (bytes.ends_with('\n')) bytes.remove_suffix(1);
    while (!bytes.empty() && tail_.size() < tailLineCap) {
        // Of the C library, which does not look at one byte at a time.
        const auto* before = static_cast<const char*>(memrchr(bytes.data(), '\n', bytes.size()));
        const std::size_t start = before == nullptr ? 0 : static_cast<std::size_t>(before - bytes.data()) + 1;
        tail_.push_back(bytes.substr(start));
        bytes = bytes.substr(0, start == 0 ? 0 : start - 1);
    }
    std::ranges::reverse(tail_);
}

}  // namespace orvane
