#include "Platform/InstanceLock.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <array>
#include <boost/json.hpp>
#include <cerrno>

namespace orvane {

namespace {

/// A record is a pid and a path; anything longer is not ours.
constexpr std::size_t longestRecord = 8192;

/// A lock on the whole file that belongs to the open file, not to the process: closing another descriptor of the
/// same file does not drop it, and it can be asked for without being taken.
struct flock wholeFileLock() {
    struct flock lock{};
    lock.l_type = F_WRLCK;
    lock.l_whence = SEEK_SET;
    return lock;
}

std::optional<InstanceRecord> parseRecord(std::string_view text) {
    boost::system::error_code error;
    const boost::json::value value = boost::json::parse(text, error);
    if (error || !value.is_object()) return std::nullopt;
    const auto* pid = value.get_object().if_contains("pid");
    const auto* socket = value.get_object().if_contains("socket");
    if (pid == nullptr || !pid->is_int64() || socket == nullptr || !socket->is_string()) return std::nullopt;
    return InstanceRecord{static_cast<pid_t>(pid->get_int64()), std::string(std::string_view(socket->get_string()))};
}

/// A lock file that was deleted and made anew while we opened it would give two hosts a lock each.
bool isStillAt(const std::string& path, int file) {
    struct stat opened{};
    struct stat named{};
    return fstat(file, &opened) == 0 && stat(path.c_str(), &named) == 0 && opened.st_ino == named.st_ino &&
           opened.st_dev == named.st_dev;
}

}  // namespace

std::expected<std::optional<InstanceLock>, SystemError> InstanceLock::acquire(const std::string& path) {
    while (true) {
        FileDescriptor file(open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, S_IRUSR | S_IWUSR));
        if (!file.isOpen()) return std::unexpected(SystemError::last("open", path));
        struct flock lock = wholeFileLock();
        if (fcntl(file.number(), F_OFD_SETLK, &lock) != 0) {
            if (errno == EAGAIN || errno == EACCES) return std::optional<InstanceLock>();
            return std::unexpected(SystemError::last("lock", path));
        }
        if (!isStillAt(path, file.number())) continue;
        if (ftruncate(file.number(), 0) != 0) return std::unexpected(SystemError::last("empty", path));
        return InstanceLock(path, std::move(file));
    }
}

bool InstanceLock::isInPlace() const {
    return isStillAt(path_, file_.number());
}

std::expected<void, SystemError> InstanceLock::publish(const InstanceRecord& record) const {
    const boost::json::object object{{"pid", record.processId}, {"socket", record.socketPath}};
    const std::string text = boost::json::serialize(object) + "\n";
    // One write of a few hundred bytes: a reader sees none, the old, or the whole of it, or a text that is no JSON.
    if (ftruncate(file_.number(), 0) != 0 ||
        pwrite(file_.number(), text.data(), text.size(), 0) != static_cast<ssize_t>(text.size())) {
        return std::unexpected(SystemError::last("write", "the instance lock"));
    }
    return {};
}

InstanceLock::Observation InstanceLock::observe(const std::string& path) {
    const FileDescriptor file(open(path.c_str(), O_RDWR | O_CLOEXEC | O_NOFOLLOW));
    if (!file.isOpen()) return {};
    struct flock lock = wholeFileLock();
    if (fcntl(file.number(), F_OFD_GETLK, &lock) != 0 || lock.l_type == F_UNLCK) return {};
    std::array<char, longestRecord> buffer{};
    const ssize_t length = pread(file.number(), buffer.data(), buffer.size(), 0);
    const auto record = length > 0 ? parseRecord({buffer.data(), static_cast<std::size_t>(length)}) : std::nullopt;
    if (!record) return {.state = State::starting, .record = {}};
    return {.state = State::running, .record = *record};
}

}  // namespace orvane
