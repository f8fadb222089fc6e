#include "Platform/TerminalLoan.h"

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>

#include "Platform/TerminalSettings.h"

namespace orvane {

namespace {

using Clock = std::chrono::steady_clock;

constexpr auto patience = std::chrono::seconds(1);

/// Waits until there is room, or something is wrong; false when the time is up.
bool hasRoom(int descriptor, Clock::time_point deadline) {
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now());
    pollfd room{.fd = descriptor, .events = POLLOUT, .revents = 0};
    return left.count() > 0 && poll(&room, 1, static_cast<int>(left.count())) != 0;
}

/// As much as goes within the patience, to a descriptor that does not block.
void writeInTime(int descriptor, std::string_view bytes) {
    const auto deadline = Clock::now() + patience;
    while (!bytes.empty()) {
        const ssize_t length = write(descriptor, bytes.data(), bytes.size());
        if (length >= 0) {
            bytes.remove_prefix(static_cast<std::size_t>(length));
        } else if (errno != EINTR && (errno != EAGAIN || !hasRoom(descriptor, deadline))) {
            return;
        }
    }
}

}  // namespace

std::expected<TerminalLoan, SystemError> TerminalLoan::begin(int input, int output) {
    TerminalLoan loan;
    loan.input_ = input;
    loan.output_ = output;
    loan.inputFlags_ = fcntl(input, F_GETFL);
    loan.outputFlags_ = fcntl(output, F_GETFL);
    if (isatty(output) == 0 || tcgetattr(input, &loan.settings_) != 0) {
        return std::unexpected(SystemError::last("use", "a terminal"));
    }
    return loan;
}

bool TerminalLoan::isInForeground() const {
    return tcgetpgrp(input_) == getpgrp();
}

void TerminalLoan::makeRawAgain() const {
    (void)TerminalSettings::apply(input_, TerminalSettings::raw(settings_));
}

void TerminalLoan::end() const {
    (void)TerminalSettings::apply(input_, settings_);
    fcntl(output_, F_SETFL, outputFlags_);
    fcntl(input_, F_SETFL, inputFlags_);
}

void TerminalLoan::end(std::string_view farewell) const {
    fcntl(output_, F_SETFL, outputFlags_ | O_NONBLOCK);
    writeInTime(output_, farewell);
    tcflush(input_, TCIFLUSH);
    end();
}

}  // namespace orvane
