#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "Platform/MainLoop.h"
#include "TerminalEmulator/LocalProcess.h"
#include "TerminalEmulator/Terminal.h"
#include "TerminalEmulator/TerminalTimer.h"

namespace orvane {

/// A terminal and the program on it, without a view. What of `TerminalDelegate` concerns a window has no effect until
/// somebody overrides it. On the main loop only.
class HeadlessTerminal : public TerminalDelegate, private LocalProcessDelegate {
 private:
    class Timer final : public TerminalTimer {
     public:
        explicit Timer(MainLoop& loop) : loop_(loop) {}
        void start(std::chrono::duration<double> delay, std::function<void()> task) override;
        void stop() override { registration_ = {}; }

     private:
        MainLoop& loop_;
        Registration registration_;
    };

    Timer timer_;

 public:
    /// Both loops must outlive it; output is read on the second, of another thread. `onEnd` gets the wait status of the
    /// program, and may destroy the terminal.
    HeadlessTerminal(MainLoop& dispatch, MainLoop& reader, TerminalOptions options,
                     std::function<void(std::optional<int> exitCode)> onEnd);
    HeadlessTerminal(const HeadlessTerminal&) = delete;
    HeadlessTerminal& operator=(const HeadlessTerminal&) = delete;
    ~HeadlessTerminal() override = default;

    Terminal terminal;
    LocalProcess process;
    std::function<void(std::optional<int> exitCode)> onEnd;
    std::optional<std::string> dir;  ///< where the program says it is, as a file URL

    void send(std::string_view bytes) override { process.send(bytes); }
    void changeScrollback(std::optional<int> lines);

    void sizeChanged(int cols, int rows) override;
    void hostCurrentDirectoryUpdated() override { dir = terminal.hostCurrentDirectory(); }

 protected:
    void dataReceived(std::string_view slice) override { terminal.feed(slice); }
    /// Rows and columns of the terminal; without a view a cell counts as 16 pixels each way.
    WindowSize getWindowSize() override;

 private:
    void processTerminated(LocalProcess& source, std::optional<int> exitCode) override;
};

}  // namespace orvane
