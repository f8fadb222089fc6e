#include "Orvane/History/TranscriptTail.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>

#include "Platform/Uninterrupted.h"

namespace orvane {

namespace {

constexpr std::size_t readSize = std::size_t{64} << 10;

std::int64_t nanoseconds(const timespec& time) {
    return std::int64_t{time.tv_sec} * 1'000'000'000 + time.tv_nsec;
}

}  // namespace

TranscriptTail::Change TranscriptTail::check() {
    const FileDescriptor file(
        uninterrupted([&] { return open(path_.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC); }));
    struct stat status{};
    if (!file.isOpen() || fstat(file.number(), &status) != 0 || !S_ISREG(status.st_mode)) return Change::gone;
    const Identity identity{.device = status.st_dev, .number = status.st_ino};
    const auto size = static_cast<std::uint64_t>(status.st_size);
    const std::int64_t modifiedAt = nanoseconds(status.st_mtim);
    const bool isFirst = identity_ == Identity();
    if (identity == identity_ && size == size_ && modifiedAt == modifiedAt_) return Change::none;

    // Written to without growing: its content may be any other.
    const bool isReplaced = identity != identity_ || size < offset_ || (size == size_ && offset_ == size);
    identity_ = identity;
    size_ = size;
    modifiedAt_ = modifiedAt;
    if (isReplaced || size - offset_ > keptBytes) startAt(size > keptBytes ? size - keptBytes : 0);
    const bool hasNewLines = readTo(file, size);
    if (isReplaced && !isFirst) return Change::replaced;
    return hasNewLines ? Change::grown : Change::none;
}

std::vector<std::string_view> TranscriptTail::lines() const {
    std::vector<std::string_view> all;
    std::string_view rest(kept_);
    bool isCut = startsInsideLine_;
    for (std::size_t end = rest.find('\n'); end != std::string_view::npos; end = rest.find('\n')) {
        if (!isCut) all.push_back(rest.substr(0, end));
        isCut = false;
        rest.remove_prefix(end + 1);
    }
    return all;
}

void TranscriptTail::startAt(std::uint64_t offset) {
    kept_.clear();
    offset_ = offset;
    // At the start of a line by chance or not: the line before it is not known.
    startsInsideLine_ = offset > 0;
}

/// Whether whole lines were added. A file that ends earlier was cut meanwhile; the next check sees that.
bool TranscriptTail::readTo(const FileDescriptor& file, std::uint64_t end) {
    std::array<char, readSize> bytes;
    const std::size_t before = kept_.size();
    while (offset_ < end) {
        const std::size_t wanted = std::min<std::uint64_t>(bytes.size(), end - offset_);
        const ssize_t count =
            uninterrupted([&] { return pread(file.number(), bytes.data(), wanted, static_cast<off_t>(offset_)); });
        if (count <= 0) break;
        kept_.append(bytes.data(), static_cast<std::size_t>(count));
        offset_ += static_cast<std::uint64_t>(count);
        bytesRead_ += static_cast<std::uint64_t>(count);
    }
    const bool hasNewLines = kept_.find('\n', before) != std::string::npos;
    forgetOldest();
    return hasNewLines;
}

void TranscriptTail::forgetOldest() {
    if (kept_.size() <= keptBytes) return;
    const std::size_t cut = kept_.size() - keptBytes;
    startsInsideLine_ = kept_[cut - 1] != '\n';
    kept_.erase(0, cut);
}

}  // namespace orvane
