#pragma once

#include <sys/types.h>

#include <chrono>
#include <string>
#include <vector>

#include "TerminalEmulator/Engine/RecordingDelegate.h"
#include "TerminalEmulator/Terminal.h"

namespace orvane::testing {

/// A scripted agent on a pseudo-terminal whose other side is our emulator, answers to queries included.
class AgentOnTerminal {
 public:
    struct Start {
        std::string scenario;  ///< path
        std::vector<std::string> arguments;
        std::string home;      ///< also the working directory, when there is no other
        std::string settings;  ///< NAME=VALUE a line
        int cols = 80;
        int rows = 25;
    };

    explicit AgentOnTerminal(const Start& start);
    ~AgentOnTerminal();
    AgentOnTerminal(const AgentOnTerminal&) = delete;
    AgentOnTerminal& operator=(const AgentOnTerminal&) = delete;

    pid_t pid() const { return pid_; }
    const Terminal& terminal() const { return terminal_; }
    const std::string& bytes() const { return bytes_; }

    void type(const std::string& bytes);
    void signal(int number) const;
    void resize(int cols, int rows);

    /// Feeds what the agent writes until the condition holds; false when it still does not after 10 seconds.
    template <typename Condition>
    [[nodiscard]] bool until(Condition condition) {
        const Deadline deadline;
        while (!condition()) {
            if (!feedSome(deadline)) return condition();
        }
        return true;
    }
    [[nodiscard]] bool shows(const std::string& text);
    /// Its exit status, 128 and more for a signal; -1 when it has not ended after 10 seconds.
    int end();

    /// Rows of the screen, or of all with the history, without spaces and empty rows at their ends.
    std::vector<std::string> screen() const { return rowsFrom(terminal_.buffer().yBase()); }
    std::vector<std::string> all() const { return rowsFrom(0); }
    std::string text() const;

 private:
    struct Deadline {
        std::chrono::steady_clock::time_point at = std::chrono::steady_clock::now() + std::chrono::seconds(10);
    };

    /// False when there is nothing more to come.
    bool feedSome(const Deadline& deadline);
    std::vector<std::string> rowsFrom(int first) const;

    RecordingDelegate delegate_;
    Terminal terminal_;
    std::string bytes_;
    int pty_ = -1;
    pid_t pid_ = -1;
};

std::string scenarioPath(const std::string& name);
/// "<C-u>text<Enter>" as the bytes a terminal sends.
std::string typed(const std::string& keys);

}  // namespace orvane::testing
