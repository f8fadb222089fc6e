#include "Orvane/Agents/HookFeedFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <utility>

#include "Platform/FileDescriptor.h"
#include "Platform/Files.h"
#include "Platform/Folders.h"
#include "Platform/Uninterrupted.h"

namespace orvane {

std::expected<HookFeedFile, SystemError> HookFeedFile::create(const std::string& folder, const std::string& name) {
    if (const auto made = Folders::makePrivate(folder); !made) return std::unexpected(made.error());
    std::string path = folder + "/" + name;
    if (const auto written = writeWholeFile(path, {}); !written) return std::unexpected(written.error());
    return HookFeedFile(std::move(path));
}

HookFeedFile::HookFeedFile(HookFeedFile&& other) noexcept
    : path_(std::exchange(other.path_, {})), offset_(other.offset_) {}

HookFeedFile& HookFeedFile::operator=(HookFeedFile&& other) noexcept {
    std::swap(path_, other.path_);
    std::swap(offset_, other.offset_);
    return *this;
}

HookFeedFile::~HookFeedFile() {
    if (!path_.empty()) unlink(path_.c_str());
}

std::string HookFeedFile::readNew() {
    // The user can put anything in its place: a pipe must not hold the host up.
    const FileDescriptor file(open(path_.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOFOLLOW));
    struct stat facts{};
    if (!file.isOpen() || fstat(file.number(), &facts) != 0 || !S_ISREG(facts.st_mode)) return {};
    const auto size = static_cast<std::uint64_t>(facts.st_size);
    if (size < offset_) offset_ = 0;
    if (size == offset_) return {};
    std::string text(std::min<std::uint64_t>(size - offset_, readLimit), '\0');
    const ssize_t count =
        uninterrupted([&] { return pread(file.number(), text.data(), text.size(), static_cast<off_t>(offset_)); });
    text.resize(count > 0 ? static_cast<std::size_t>(count) : 0);
    const std::size_t end = text.rfind('\n');
    // A line that fills all there is to read will never end.
    const std::size_t taken = end != std::string::npos ? end + 1 : text.size() == readLimit ? text.size() : 0;
    offset_ += taken;
    text.resize(taken);
    return text;
}

}  // namespace orvane
