#include "Platform/TerminalDevice.h"

#include <fcntl.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <cerrno>
#include <string>

#include "Platform/TerminalSettings.h"
#include "Platform/Uninterrupted.h"

namespace orvane {

namespace {

std::unexpected<SystemError> failure(std::string_view action) {
    return std::unexpected(SystemError::last(action, "a terminal"));
}

/// Whether both are the same terminal. A descriptor of /dev/tty opened anew would be the terminal of this process, and
/// one of a pseudo-terminal's master a new pair.
bool areOneTerminal(int one, int other) {
    unsigned int numbers[2] = {};
    return ioctl(one, TIOCGDEV, &numbers[0]) == 0 && ioctl(other, TIOCGDEV, &numbers[1]) == 0 &&
           numbers[0] == numbers[1];
}

FileDescriptor openAnew(int handed) {
    const std::string path = "/proc/self/fd/" + std::to_string(handed);
    FileDescriptor file(::open(path.c_str(), O_RDWR | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
    return file.isOpen() && areOneTerminal(file.number(), handed) ? std::move(file) : FileDescriptor();
}

std::expected<FileDescriptor, SystemError> duplicate(int handed) {
    const int flags = fcntl(handed, F_GETFL);
    if ((flags & O_ACCMODE) != O_RDWR) return std::unexpected(SystemError::of(EACCES, "open", "a terminal"));
    FileDescriptor file(fcntl(handed, F_DUPFD_CLOEXEC, 0));
    if (!file.isOpen() || fcntl(file.number(), F_SETFL, flags | O_NONBLOCK) != 0) return failure("open");
    return file;
}

/// A process in the background of its own terminal is stopped when it reads from it. One that was handed the terminal
/// is to have it all the same, and gives its claim up to be stopped there; it may have been started with "&".
void leaveJobControl(int terminal) {
    const pid_t session = getsid(0);
    if (session != getpid() && tcgetsid(terminal) == session) ioctl(terminal, TIOCNOTTY);
}

}  // namespace

std::expected<TerminalDevice, SystemError> TerminalDevice::open(const FileDescriptor& handed) {
    termios settings{};
    if (tcgetattr(handed.number(), &settings) != 0) return failure("open");
    FileDescriptor file = openAnew(handed.number());
    if (!file.isOpen()) {
        auto same = duplicate(handed.number());
        if (!same) return std::unexpected(std::move(same.error()));
        file = *std::move(same);
    }
    leaveJobControl(file.number());
    return TerminalDevice(std::move(file), settings);
}

std::expected<void, SystemError> TerminalDevice::makeRaw() const {
    return TerminalSettings::apply(file_.number(), TerminalSettings::raw(settings_));
}

std::expected<void, SystemError> TerminalDevice::restore() const {
    return TerminalSettings::apply(file_.number(), settings_);
}

std::optional<WindowSize> TerminalDevice::size() const {
    winsize size{};
    if (ioctl(file_.number(), TIOCGWINSZ, &size) != 0 || size.ws_col == 0 || size.ws_row == 0) return std::nullopt;
    return WindowSize{.rows = size.ws_row, .cols = size.ws_col, .xPixels = size.ws_xpixel, .yPixels = size.ws_ypixel};
}

std::expected<std::size_t, SystemError> TerminalDevice::read(std::span<char> room) const {
    const ssize_t length = uninterrupted([&] { return ::read(file_.number(), room.data(), room.size()); });
    if (length > 0) return static_cast<std::size_t>(length);
    if (length < 0) return errno == EAGAIN ? std::expected<std::size_t, SystemError>(0) : failure("read from");
    // After a hang-up every read finds the end, as one does that finds nothing when somebody set VMIN to 0.
    termios settings{};
    if (tcgetattr(file_.number(), &settings) != 0)
        return std::unexpected(SystemError::of(EIO, "read from", "a terminal"));
    return 0;
}

std::expected<std::size_t, SystemError> TerminalDevice::write(std::string_view bytes) const {
    const ssize_t length = uninterrupted([&] { return ::write(file_.number(), bytes.data(), bytes.size()); });
    if (length >= 0) return static_cast<std::size_t>(length);
    return errno == EAGAIN ? std::expected<std::size_t, SystemError>(0) : failure("write to");
}

}  // namespace orvane
