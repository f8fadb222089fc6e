#pragma once

#include <expected>
#include <optional>
#include <string>
#include <string_view>

#include "Orvane/Agents/SessionProcess.h"
#include "TerminalEmulator/HeadlessTerminal.h"

namespace orvane {

/// The program of a session on a terminal of its own. What it writes is not trusted with what it did not write.
class TerminalSession final : public SessionProcess {
 public:
    /// Of a session that no view shows, in cells.
    static constexpr int hiddenCols = 100;
    static constexpr int hiddenRows = 37;

    /// Both loops must outlive it. `forcedTranscriptID` is what its command line says.
    TerminalSession(MainLoop& loop, MainLoop& reader, SessionProcessEvents events,
                    std::optional<std::string> forcedTranscriptID = {});

    [[nodiscard]] std::expected<void, SystemError> start(const LocalProcess::Start& start) {
        return screen_.process.startProcess(start);
    }

    pid_t processId() const override { return screen_.process.shellPid(); }
    pid_t foregroundProcessGroup() const override;
    void terminate() override { screen_.process.terminate(); }
    HeadlessTerminal* terminal() override { return &screen_; }
    std::optional<std::string> forcedTranscriptID() const override { return forcedTranscriptID_; }

 private:
    class Screen final : public HeadlessTerminal {
     public:
        Screen(MainLoop& loop, MainLoop& reader, SessionProcessEvents events);
        bool isProcessTrusted() override { return false; }
        void setTerminalTitle(std::string_view /*title*/) override { hasNewTitle_ = true; }
        void bell() override { onNews_({TerminalNews::Bell{}}); }
        void clipboardCopy(std::string_view content) override;
        void notify(std::string_view title, std::string_view body) override;

     protected:
        void dataReceived(std::string_view slice) override;

     private:
        std::function<void(std::string_view)> onActivity_;
        std::function<void()> onTitle_;
        std::function<void(const TerminalNews&)> onNews_;
        bool hasNewTitle_ = false;
    };

    Screen screen_;
    std::optional<std::string> forcedTranscriptID_;
};

}  // namespace orvane
