#include "ViewLatency/Interruption.h"

#include <csignal>

namespace orvane::benchmark::Interruption {

namespace {

volatile std::sig_atomic_t isRequested = 0;

}  // namespace

void watch() {
    struct sigaction action{};
    action.sa_handler = [](int /*signal*/) { isRequested = 1; };
    for (const int signal : {SIGINT, SIGTERM, SIGHUP})
        sigaction(signal, &action, nullptr);
}

Measured<void> check() {
    if (isRequested != 0) return Failure("interrupted");
    return {};
}

}  // namespace orvane::benchmark::Interruption
