#pragma once

#include <chrono>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "Platform/Environment.h"
#include "Platform/PseudoTerminalHelpers.h"
#include "Support/Failure.h"

namespace orvane {
class Terminal;
}

namespace orvane::benchmark {

/// The terminal that a person sits at, with one program on it, and the person, who types to an echo in it. Ends the
/// program with itself.
class Window {
 public:
    static constexpr int cols = 120;
    static constexpr int rows = 32;

    /// The first word is a path. Returns when the echo is to be seen. What comes is also fed to the screen, if any.
    [[nodiscard]] static Measured<std::unique_ptr<Window>> open(std::vector<std::string> words, Environment environment,
                                                                Terminal* screen = nullptr);
    /// For the shell to run.
    [[nodiscard]] static Measured<std::unique_ptr<Window>> openCommand(const std::string& command,
                                                                       const Environment& environment);
    Window(const Window&) = delete;
    Window& operator=(const Window&) = delete;
    ~Window();

    /// Types a key and reads until its echo is there; the microseconds in between. Fails when it does not come.
    [[nodiscard]] Measured<double> press();
    /// Reads what comes for so long.
    [[nodiscard]] Measured<void> readFor(std::chrono::microseconds time);

    std::size_t bytesReceived() const { return bytesReceived_; }
    /// Updates that the program asked to be shown at once (DECSET 2026).
    std::size_t framesReceived() const { return framesReceived_; }

 private:
    Window(PseudoTerminalHelpers::Process process, Terminal* screen) : process_(std::move(process)), screen_(screen) {}

    [[nodiscard]] Measured<void> readUntil(std::string_view text);
    /// Whether anything came in time.
    [[nodiscard]] Measured<bool> readOnce(std::chrono::microseconds limit);
    void take(std::string_view bytes);
    [[nodiscard]] Measured<void> write(std::string_view bytes) const;
    std::size_t countOf(std::string_view text) const;

    PseudoTerminalHelpers::Process process_;
    std::string recent_;           ///< what the last read brought, behind the end of what came before
    std::size_t recentBegin_ = 0;  ///< where that read begins in it
    std::size_t keys_ = 0;
    std::size_t bytesReceived_ = 0;
    std::size_t framesReceived_ = 0;
    Terminal* screen_;
};

}  // namespace orvane::benchmark
