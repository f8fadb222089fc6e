#include "Platform/DiagnosticLog.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <sys/stat.h>
#include <unistd.h>

#include <chrono>
#include <ctime>

#include "Platform/Uninterrupted.h"

namespace orvane {

namespace {

WallTime systemTime() {
    return std::chrono::time_point_cast<std::chrono::microseconds>(std::chrono::system_clock::now());
}

FileDescriptor openOwn(const std::string& path) {
    FileDescriptor file(open(path.c_str(), O_WRONLY | O_APPEND | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
    struct stat status{};
    const bool isOwn = file.isOpen() && fstat(file.number(), &status) == 0 && S_ISREG(status.st_mode) &&
                       status.st_uid == geteuid() && status.st_nlink == 1;
    return isOwn ? std::move(file) : FileDescriptor();
}

bool isControl(unsigned char byte) {
    return byte < 0x20 || byte == 0x7F;
}

/// C0, DEL, and C1 as UTF-8 has them (C2 80 … C2 9F); terminals act on all three.
void appendWithoutControls(std::string& line, std::string_view message) {
    for (std::size_t index = 0; index < message.size(); ++index) {
        const auto byte = static_cast<unsigned char>(message[index]);
        const auto next = index + 1 < message.size() ? static_cast<unsigned char>(message[index + 1]) : 0;
        const bool isC1 = byte == 0xC2 && next >= 0x80 && next <= 0x9F;
        if (isC1) ++index;
        line += isC1 || isControl(byte) ? ' ' : static_cast<char>(byte);
    }
}

}  // namespace

DiagnosticLog::DiagnosticLog(const std::string& path, Clock clock)
    : file_(openOwn(path)), clock_(clock ? std::move(clock) : Clock(systemTime)) {
    tzset();  // localtime_r need not look at the time zone itself
}

void DiagnosticLog::log(std::string_view message) const {
    if (!isOn()) return;
    const WallTime time = clock_();
    const auto seconds = std::chrono::floor<std::chrono::seconds>(time);
    const std::time_t sinceEpoch = seconds.time_since_epoch().count();
    std::tm local{};
    localtime_r(&sinceEpoch, &local);
    std::string line = fmt::format("{:02}:{:02}:{:02}.{:03} ", local.tm_hour, local.tm_min, local.tm_sec,
                                   std::chrono::floor<std::chrono::milliseconds>(time - seconds).count());
    appendWithoutControls(line, message);
    line += '\n';
    // A log that cannot be written (a full disk) has nobody to tell.
    [[maybe_unused]] const ssize_t written =
        uninterrupted([&] { return write(file_.number(), line.data(), line.size()); });
}

}  // namespace orvane
