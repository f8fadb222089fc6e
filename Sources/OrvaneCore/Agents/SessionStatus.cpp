#include "OrvaneCore/Agents/SessionStatus.h"

#include "OrvaneCore/Support/Overloaded.h"

namespace orvane {

std::string_view SessionStatus::name() const {
    return std::visit(Overloaded{
                          [](const Ready&) { return "ready"; },
                          [](const Working&) { return "working"; },
                          [](const Waiting&) { return "waiting"; },
                          [](const Idle&) { return "idle"; },
                          [](const Done&) { return "done"; },
                          [](const Failed&) { return "failed"; },
                      },
                      value);
}

bool SessionStatus::isActive() const {
    return !std::holds_alternative<Done>(value) && !std::holds_alternative<Failed>(value);
}

ProcessEnd ProcessEnd::decoding(int waitStatus) {
    if (waitStatus < 0) return {.exitCode = waitStatus, .signal = {}};
    // The low seven bits hold the signal; bit seven tells of a core dump (wait(2)).
    const int signal = waitStatus & 0x7F;
    if (signal != 0) return {.exitCode = {}, .signal = signal};
    return {.exitCode = (waitStatus >> 8) & 0xFF, .signal = {}};
}

}  // namespace orvane
