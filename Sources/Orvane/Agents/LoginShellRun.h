#pragma once

#include <cstddef>
#include <expected>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "Orvane/Agents/ShellSetup.h"
#include "Platform/ChildProcess.h"
#include "Platform/MainLoop.h"

namespace orvane {

/// A script that runs in the user's login shell, in the background: in a session of its own, so that it can neither ask
/// the user's terminal for anything nor take it away, with nothing to read, in the user's home folder (that of the host
/// may be gone). What it left running in its group is killed when the shell ends, when a limit is reached, and when
/// this object is destroyed.
class LoginShellRun {
 public:
    /// Of a shell that is asked something. A profile may start whole version managers, or wait for ever.
    static constexpr Duration answerLimit = std::chrono::seconds(10);

    struct Limits {
        std::optional<Duration> time;
        /// In bytes, of what is kept for `Result`.
        std::size_t output = std::size_t{1024} * 1024;
    };

    struct Result {
        ExitStatus status;
        /// What the script and the user's profile printed; empty when somebody took it as it came.
        std::string output;
    };

    /// They run on the loop.
    struct Callbacks {
        /// Takes what is printed as it comes; without it the output is kept.
        std::function<void(std::string_view)> onOutput;
        /// Also after a limit was reached, with what was printed until then and the signal as the status. Not called
        /// once the run is destroyed, which it may do itself.
        std::move_only_function<void(Result)> onEnd;
    };

    /// Errors are those of `ChildProcess::start`.
    [[nodiscard]] static std::expected<std::unique_ptr<LoginShellRun>, SystemError> start(
        MainLoop& loop, const ShellSetup& setup, std::string script, const Limits& limits, Callbacks callbacks);
    LoginShellRun(const LoginShellRun&) = delete;
    LoginShellRun& operator=(const LoginShellRun&) = delete;
    ~LoginShellRun() { killGroup(); }

 private:
    LoginShellRun(const Limits& limits, Callbacks callbacks) : limits_(limits), callbacks_(std::move(callbacks)) {}

    void take(std::string_view bytes);
    void finish(const ExitStatus& status);
    void killGroup();

    Limits limits_;
    Callbacks callbacks_;
    std::string output_;
    std::unique_ptr<ChildProcess> shell_;
    Registration timeout_;
};

}  // namespace orvane
