#include "Platform/SignalWatch.h"

#include <sys/signalfd.h>
#include <unistd.h>

namespace orvane {

SignalWatch::SignalWatch(MainLoop& loop, std::initializer_list<int> signals, std::function<void(int)> onSignal)
    : onSignal_(std::move(onSignal)) {
    sigset_t set;
    sigemptyset(&set);
    for (const int signal : signals)
        sigaddset(&set, signal);
    pthread_sigmask(SIG_BLOCK, &set, nullptr);
    descriptor_ = FileDescriptor(signalfd(-1, &set, SFD_CLOEXEC | SFD_NONBLOCK));
    watch_ = loop.watch(descriptor_.number(), Readiness::readable, [this] { readSignals(); });
}

void SignalWatch::ignoreBrokenPipes() {
    std::signal(SIGPIPE, SIG_IGN);
}

void SignalWatch::readSignals() {
    signalfd_siginfo information{};
    while (read(descriptor_.number(), &information, sizeof information) == sizeof information) {
        onSignal_(static_cast<int>(information.ssi_signo));
    }
}

}  // namespace orvane
