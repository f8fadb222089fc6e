#pragma once

#include <csignal>
#include <variant>

namespace orvane {

/// How a process ended, after waitid(2).
struct ExitStatus {
    struct Exited {
        int code = 0;  ///< 0 to 255
        bool operator==(const Exited&) const = default;
    };
    struct Signalled {
        int signal = 0;
        bool operator==(const Signalled&) const = default;
    };

    std::variant<Exited, Signalled> outcome;

    bool operator==(const ExitStatus&) const = default;

    static ExitStatus of(const siginfo_t& info) {
        if (info.si_code == CLD_EXITED) return {Exited{info.si_status}};
        return {Signalled{info.si_status}};
    }

    bool isSuccess() const { return outcome == decltype(outcome)(Exited{0}); }

    /// As a shell tells it in `$?`: the code, or 128 + the signal.
    int shellCode() const {
        if (const auto* exited = std::get_if<Exited>(&outcome)) return exited->code;
        return 128 + std::get<Signalled>(outcome).signal;
    }
};

}  // namespace orvane
