#include "Platform/Files.h"

#include <dirent.h>
#include <fcntl.h>
#include <fmt/format.h>
#include <sys/file.h>
#include <sys/random.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <climits>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <utility>

#include "Platform/Uninterrupted.h"

namespace orvane {

namespace {

/// As many links as the kernel follows itself, path_resolution(7).
constexpr int linkLimit = 40;
constexpr std::string_view temporaryMark = ".orvane-tmp-";
/// Of the target's name that goes into the temporary's, so that the longest allowed name (255 bytes) still works.
constexpr std::size_t temporaryStemLimit = 200;
constexpr int attemptLimit = 100;

using Done = std::expected<void, SystemError>;

std::unexpected<SystemError> failed(std::string_view action, const std::string& path) {
    return std::unexpected(SystemError::last(action, path));
}

std::unexpected<SystemError> failed(int number, std::string_view action, const std::string& path) {
    return std::unexpected(SystemError::of(number, action, path));
}

/// A path with a zero byte would be cut there by the system.
Done checkPath(std::string_view action, const std::string& path) {
    if (path.empty()) return failed(ENOENT, action, path);
    if (path.find('\0') != std::string::npos) return failed(EINVAL, action, path.substr(0, path.find('\0')));
    return {};
}

std::string folderOf(const std::string& path) {
    const auto slash = path.rfind('/');
    return slash == std::string::npos ? "./" : path.substr(0, slash + 1);
}

std::string nameOf(const std::string& path) {
    return path.substr(path.rfind('/') + 1);
}

/// The path that the last part of `path` points to in the end, which need not exist.
std::expected<std::string, SystemError> withoutLinks(const std::string& path) {
    std::string resolved = path;
    for (int step = 0; step < linkLimit; ++step) {
        std::array<char, PATH_MAX> buffer{};
        const ssize_t length = readlink(resolved.c_str(), buffer.data(), buffer.size());
        if (length < 0 && (errno == EINVAL || errno == ENOENT)) return resolved;
        if (length < 0) return failed("resolve", path);
        const std::string target(buffer.data(), static_cast<std::size_t>(length));
        resolved = target.starts_with('/') ? target : folderOf(resolved).append(target);
    }
    return failed(ELOOP, "resolve", path);
}

/// A file that is to be replaced, taken apart. Everything is done relative to the open folder.
struct Target {
    std::string path;
    std::string name;
    FileDescriptor folder;

    static std::expected<Target, SystemError> open(const std::string& path) {
        if (const auto checked = checkPath("write", path); !checked) return std::unexpected(checked.error());
        const auto resolved = withoutLinks(path);
        if (!resolved) return std::unexpected(resolved.error());
        const std::string folder = folderOf(*resolved);
        Target target{.path = *resolved, .name = nameOf(*resolved), .folder = {}};
        target.folder =
            FileDescriptor(uninterrupted([&] { return ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC); }));
        if (!target.folder.isOpen()) return failed("open the folder of", path);
        struct stat status{};
        const bool exists = fstatat(target.folder.number(), target.name.c_str(), &status, AT_SYMLINK_NOFOLLOW) == 0;
        if (target.name.empty() || (exists && S_ISDIR(status.st_mode))) return failed(EISDIR, "write", path);
        if (exists && !S_ISREG(status.st_mode)) {
            return std::unexpected(SystemError{.what = "write " + path + ": not a regular file"});
        }
        return target;
    }

    std::string temporaryStem() const { return "." + name.substr(0, temporaryStemLimit) + std::string(temporaryMark); }
};

/// The file that becomes the target. Its writer holds a lock on it, which the system takes back however the writer
/// ends: a temporary that can be locked has no writer. (A process id in the name would mislead where process ids are
/// used again or where two containers share a folder.)
class Temporary {
 public:
    Temporary(const Target& target, FileDescriptor file, std::string name)
        : target_(&target), file_(std::move(file)), name_(std::move(name)) {}
    Temporary(Temporary&& other) noexcept
        : target_(other.target_), file_(std::move(other.file_)), name_(std::exchange(other.name_, {})) {}
    Temporary& operator=(Temporary&&) = delete;
    ~Temporary() {
        if (!name_.empty()) unlinkat(target_->folder.number(), name_.c_str(), 0);
    }

    static std::expected<Temporary, SystemError> create(const Target& target) {
        for (int attempt = 0; attempt < attemptLimit; ++attempt) {
            std::uint64_t random = 0;
            if (uninterrupted([&] { return getrandom(&random, sizeof random, 0); }) < 0)
                return failed("get random bytes to write", target.path);
            std::string name = target.temporaryStem() + fmt::format("{:016x}", random);
            FileDescriptor file(uninterrupted([&] {
                return openat(target.folder.number(), name.c_str(), O_RDWR | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC,
                              0600);
            }));
            if (!file.isOpen() && errno == EEXIST) continue;
            if (!file.isOpen()) return failed("make a temporary file beside", target.path);
            Temporary temporary(target, std::move(file), std::move(name));
            if (temporary.lock()) return temporary;
        }
        return failed(EBUSY, "make a temporary file beside", target.path);
    }

    Done fill(std::string_view bytes, mode_t mode) const {
        while (!bytes.empty()) {
            const ssize_t written = uninterrupted([&] { return ::write(file_.number(), bytes.data(), bytes.size()); });
            if (written < 0) return failed("write", target_->path);
            bytes.remove_prefix(static_cast<std::size_t>(written));
        }
        if (fchmod(file_.number(), mode) != 0) return failed("set the mode of", target_->path);
        if (uninterrupted([&] { return fsync(file_.number()); }) != 0) return failed("sync", target_->path);
        return {};
    }

    Done replaceTarget() {
        const int folder = target_->folder.number();
        if (renameat(folder, name_.c_str(), folder, target_->name.c_str()) != 0)
            return failed("replace", target_->path);
        name_.clear();
        return {};
    }

 private:
    /// False when another writer took this file for a leftover, between its creation and its lock, and removed it.
    bool lock() const {
        const bool taken = flock(file_.number(), LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK;
        struct stat status{};
        return !taken && fstat(file_.number(), &status) == 0 && status.st_nlink > 0;
    }

    const Target* target_;
    FileDescriptor file_;
    std::string name_;  ///< empty once it is the target
};

void removeIfLeft(const Target& target, const char* name) {
    const FileDescriptor file(
        openat(target.folder.number(), name, O_RDWR | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
    if (!file.isOpen() || flock(file.number(), LOCK_EX | LOCK_NB) != 0) return;
    // Its writer may have renamed it to the target just now; then nothing has this name any more, or ever again.
    unlinkat(target.folder.number(), name, 0);
}

/// A leftover that cannot be removed does no harm, so nothing here is an error.
void removeLeftovers(const Target& target) {
    FileDescriptor listed(openat(target.folder.number(), ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!listed.isOpen()) return;
    const std::unique_ptr<DIR, int (*)(DIR*)> folder(fdopendir(listed.number()), &closedir);
    if (!folder) return;
    listed.release();
    const std::string stem = target.temporaryStem();
    while (const dirent* entry = readdir(folder.get())) {
        if (std::string_view(entry->d_name).starts_with(stem)) removeIfLeft(target, entry->d_name);
    }
}

bool isFolder(const std::string& path) {
    struct stat status{};
    return stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

/// Gives the file the second name unless that exists (EEXIST).
int linkOrRename(const std::string& path, const std::string& kept) {
    if (linkat(AT_FDCWD, path.c_str(), AT_FDCWD, kept.c_str(), 0) == 0) return 0;
    if (errno != EPERM && errno != EOPNOTSUPP && errno != EMLINK && errno != ENOSYS) return -1;
    return renameat2(AT_FDCWD, path.c_str(), AT_FDCWD, kept.c_str(), RENAME_NOREPLACE);
}

}  // namespace

std::expected<std::string, SystemError> readWholeFile(const std::string& path, std::size_t sizeLimit) {
    if (const auto checked = checkPath("read", path); !checked) return std::unexpected(checked.error());
    const FileDescriptor file(
        uninterrupted([&] { return open(path.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC); }));
    struct stat status{};
    if (!file.isOpen() || fstat(file.number(), &status) != 0) return failed("read", path);
    if (S_ISDIR(status.st_mode)) return failed(EISDIR, "read", path);
    if (!S_ISREG(status.st_mode)) return std::unexpected(SystemError{.what = "read " + path + ": not a regular file"});
    if (std::cmp_greater(status.st_size, sizeLimit)) return failed(EFBIG, "read", path);

    // The size is a hint only: the file may grow meanwhile, and those of /proc say 0.
    constexpr std::size_t step = std::size_t{16} * 1024;
    std::string bytes(static_cast<std::size_t>(status.st_size) + 1, '\0');
    std::size_t filled = 0;
    while (true) {
        if (filled == bytes.size()) bytes.resize(filled + step);
        const ssize_t count =
            uninterrupted([&] { return ::read(file.number(), bytes.data() + filled, bytes.size() - filled); });
        if (count < 0) return failed("read", path);
        filled += static_cast<std::size_t>(count);
        if (filled > sizeLimit) return failed(EFBIG, "read", path);
        if (count == 0) break;
    }
    bytes.resize(filled);
    return bytes;
}

Done writeWholeFile(const std::string& path, std::string_view bytes, mode_t mode) {
    const auto target = Target::open(path);
    if (!target) return std::unexpected(target.error());
    removeLeftovers(*target);
    auto temporary = Temporary::create(*target);
    if (!temporary) return std::unexpected(temporary.error());
    if (auto filled = temporary->fill(bytes, mode); !filled) return filled;
    if (auto replaced = temporary->replaceTarget(); !replaced) return replaced;
    // EINVAL: a file system that has nothing to sync in a folder.
    const int synced = uninterrupted([&] { return fsync(target->folder.number()); });
    if (synced != 0 && errno != EINVAL) return failed("sync the folder of", path);
    return {};
}

Done createFolders(const std::string& path, mode_t mode) {
    if (const auto checked = checkPath("make folder", path); !checked) return checked;
    if (isFolder(path)) return {};
    if (mkdir(path.c_str(), mode) == 0) return {};
    if (errno == ENOENT) {
        const std::string bare = path.substr(0, path.find_last_not_of('/') + 1);
        const std::string parent = folderOf(bare);
        if (parent == "./") return failed(ENOENT, "make folder", path);  // the working folder itself is gone
        const std::string above = parent.substr(0, parent.find_last_not_of('/') + 1);
        if (auto made = createFolders(above.empty() ? "/" : above, mode); !made) return made;
        if (mkdir(path.c_str(), mode) == 0) return {};
    }
    const int reason = errno;
    if (reason == EEXIST && isFolder(path)) return {};  // somebody else just made it
    return failed(reason == EEXIST ? ENOTDIR : reason, "make folder", path);
}

std::expected<FileDescriptor, SystemError> openFolder(const std::string& path) {
    if (const auto checked = checkPath("enter folder", path); !checked) return std::unexpected(checked.error());
    FileDescriptor folder(::open(path.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
    if (!folder.isOpen() || faccessat(folder.number(), ".", X_OK, AT_EACCESS) != 0) return failed("enter folder", path);
    return folder;
}

std::expected<std::string, SystemError> keepAside(const std::string& path, std::string_view suffix) {
    const auto target = Target::open(path);
    if (!target) return std::unexpected(target.error());
    const std::string plain = target->path + std::string(suffix);
    std::string kept = plain;
    for (int number = 2; linkOrRename(target->path, kept) != 0; ++number) {
        if (errno != EEXIST || number > attemptLimit) return failed("keep the old content of", path);
        kept = fmt::format("{}-{}", plain, number);
    }
    return kept;
}

}  // namespace orvane
