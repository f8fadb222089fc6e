#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "TerminalEmulator/ProgressReport.h"
#include "TerminalEmulator/TerminalColor.h"
#include "TerminalEmulator/TerminalModes.h"
#include "TerminalEmulator/TerminalOptions.h"
#include "TerminalEmulator/WindowManipulationCommand.h"

namespace orvane {

/// What a terminal tells and asks of those around it, on the thread that feeds it and inside that call. In a call it
/// may be read, resized and reset, not fed or destroyed. Views are good during the call.
class TerminalDelegate {
 public:
    struct CellSize {
        int width = 0;
        int height = 0;
        bool operator==(const CellSize&) const = default;
    };
    struct Colors {
        TerminalColor foreground;
        TerminalColor background;
        bool operator==(const Colors&) const = default;
    };

    virtual ~TerminalDelegate() = default;

    virtual void showCursor() {}
    virtual void hideCursor() {}
    virtual void setTerminalTitle(std::string_view /*title*/) {}
    virtual void setTerminalIconTitle(std::string_view /*title*/) {}
    /// For a report, the answer to send as it stands; without one the terminal answers what it can itself.
    virtual std::optional<std::string> windowCommand(const WindowManipulationCommand& /*command*/) { return {}; }
    /// The terminal has got another size, whoever asked for it.
    virtual void sizeChanged(int /*cols*/, int /*rows*/) {}
    /// Bytes for the program: answers, and events that the host has encoded.
    virtual void send(std::string_view bytes) = 0;
    /// The view of the history moved to this row of the ring.
    virtual void scrolled(int /*yDisp*/) {}
    virtual void linefeed() {}
    /// The normal or the alternate screen was switched to.
    virtual void bufferActivated() {}
    virtual void synchronizedOutputChanged(bool /*isActive*/) {}
    virtual void bell() {}
    virtual void selectionChanged() {}
    /// Whether the program may read what it did not write: the clipboard, titles, checksums of the screen.
    virtual bool isProcessTrusted() { return true; }
    virtual std::optional<CellSize> cellSizeInPixels() { return {}; }
    virtual void mouseModeChanged() {}
    virtual void cursorStyleChanged(CursorStyle /*style*/) {}
    virtual void hostCurrentDirectoryUpdated() {}
    virtual void hostCurrentDocumentUpdated() {}
    /// An entry of the palette, or with none all of them.
    virtual void colorChanged(std::optional<int> /*index*/) {}
    virtual void setForegroundColor(const TerminalColor& /*color*/) {}
    virtual void setBackgroundColor(const TerminalColor& /*color*/) {}
    /// Nothing: the cursor has its default colour again.
    virtual void setCursorColor(const std::optional<TerminalColor>& /*color*/) {}
    /// The colours in use where the program has set none of its own.
    virtual std::optional<Colors> getColors() { return {}; }
    /// An OSC 1337 that is no file.
    virtual void iTermContent(std::string_view /*content*/) {}
    /// The decoded content of OSC 52.
    virtual void clipboardCopy(std::string_view /*content*/) {}
    /// Asked of trusted programs' terminals only.
    virtual std::optional<std::string> clipboardRead() { return {}; }
    virtual void notify(std::string_view /*title*/, std::string_view /*body*/) {}
    virtual void progressReport(const ProgressReport& /*report*/) {}
};

}  // namespace orvane
