#include "Platform/SignalInbox.h"

#include <sys/signalfd.h>
#include <unistd.h>

namespace orvane {

SignalInbox::SignalInbox(std::initializer_list<int> signals) {
    sigset_t set;
    sigemptyset(&set);
    for (const int signal : signals)
        sigaddset(&set, signal);
    // A blocked signal waits even if it would be ignored, as SIGWINCH and SIGCONT are.
    pthread_sigmask(SIG_BLOCK, &set, &before_);
    descriptor_ = FileDescriptor(signalfd(-1, &set, SFD_CLOEXEC | SFD_NONBLOCK));
}

SignalInbox::~SignalInbox() {
    pthread_sigmask(SIG_SETMASK, &before_, nullptr);
}

std::optional<int> SignalInbox::take() const {
    signalfd_siginfo information{};
    if (read(descriptor_.number(), &information, sizeof information) != sizeof information) return std::nullopt;
    return static_cast<int>(information.ssi_signo);
}

void SignalInbox::dieOf(int signal) {
    std::signal(signal, SIG_DFL);
    sigset_t only;
    sigemptyset(&only);
    sigaddset(&only, signal);
    raise(signal);
    pthread_sigmask(SIG_UNBLOCK, &only, nullptr);
    _exit(128 + signal);  // not reached but for a signal that ends nobody
}

}  // namespace orvane
