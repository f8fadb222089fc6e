#pragma once

#include <string>
#include <string_view>

namespace orvane {

/// A system call that failed: what was attempted, on what, and the number the system gave (`errno`; 0 when the fault
/// was found by ourselves and `what` says it all).
struct SystemError {
    std::string what;
    int number = 0;

    bool operator==(const SystemError&) const = default;

    /// "open /x/state.json: Permission denied"
    std::string message() const;

    /// The error of the call that just failed.
    static SystemError last(std::string_view action, std::string_view subject = {});
    static SystemError of(int number, std::string_view action, std::string_view subject = {});
};

}  // namespace orvane
