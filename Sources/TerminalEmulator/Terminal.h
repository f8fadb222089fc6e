#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "TerminalEmulator/Buffer/Buffer.h"
#include "TerminalEmulator/Engine/KeyModifierOptions.h"
#include "TerminalEmulator/Links/LinkMatch.h"
#include "TerminalEmulator/Parser/StringEnd.h"
#include "TerminalEmulator/Position.h"
#include "TerminalEmulator/TerminalDelegate.h"
#include "TerminalEmulator/TerminalModes.h"
#include "TerminalEmulator/TerminalOptions.h"
#include "TerminalEmulator/TerminalTimer.h"

namespace orvane {

class TerminalEngine;

/// A terminal of xterm's class: bytes of a program in, a screen with its history out, answers and news to the delegate.
///
/// It has no lock and no thread: everything is called on one thread. Nothing it is fed makes it fail, and what it keeps
/// is bounded, whatever that is.
class Terminal {
 public:
    static constexpr int MINIMUM_COLS = Buffer::minimumCols;
    static constexpr int MINIMUM_ROWS = Buffer::minimumRows;
    static constexpr std::chrono::duration<double> synchronizedOutputTimeoutSeconds{1.0};

    /// Rows from the first to the last.
    struct RowRange {
        std::int64_t startRow = 0;
        std::int64_t endRow = 0;
        bool operator==(const RowRange&) const = default;
    };
    struct CursorLocation {
        int x = 0;
        int y = 0;
        bool operator==(const CursorLocation&) const = default;
    };
    enum class Focus : std::uint8_t { in, out };
    enum class BufferKind : std::uint8_t { active, normal, alternate };

    /// Receives the payload of an OSC and how it ended, which an answer repeats.
    using OscHandler = std::function<void(std::string_view payload, StringEnd end)>;

    /// The delegate and the timer must outlive the terminal. Without a timer synchronized output lasts until the
    /// program ends it.
    explicit Terminal(TerminalDelegate& delegate, TerminalOptions options = {}, TerminalTimer* timer = nullptr);
    ~Terminal();
    Terminal(const Terminal&) = delete;
    Terminal& operator=(const Terminal&) = delete;

    // Input. A sequence or a character may be cut anywhere between two calls.
    void feed(std::string_view bytes);
    void feed(std::span<const std::uint8_t> bytes);

    /// Clamped to at least 2 by 1. Text of the normal screen is laid out anew when the width changes.
    void resize(int cols, int rows);
    void changeScrollback(std::optional<int> lines);
    /// As RIS does.
    void resetToInitialState();
    /// A handler for this OSC goes before what the terminal does itself; an empty one is taken away.
    void registerOscHandler(int code, OscHandler handler);
    /// Registers handlers for the commands of colours that xterm knows beyond foreground, background, cursor and
    /// palette: bold text, the pointer, the selection and the like (OSC 5, 13 to 19 and those that reset them). They
    /// are held and told; nothing here is drawn in them.
    void registerFurtherColors();

    // Screen and history. A `Position` counts rows of the ring from its oldest.
    int cols() const;
    int rows() const;
    const TerminalOptions& options() const;
    const Buffer& buffer() const;  ///< the one that is shown
    const Buffer& normalBuffer() const;
    const Buffer& altBuffer() const;
    bool isAlternateBufferActive() const;
    const ClusterTable& clusters() const;
    RowView getLine(int row) const;                          ///< of the viewport
    RowView getScrollInvariantLine(std::int64_t row) const;  ///< `row` less `Buffer::linesTop` is its place in the ring
    std::optional<CharData> getCharData(int col, int row) const;  ///< of the viewport
    std::string getCharacter(int col, int row) const;
    /// From the first position up to, not including, the second; rows that end a line end with a line feed, and blanks
    /// at their ends are left out.
    std::string getText(Position start, Position end) const;
    /// All of a buffer, history included, as text.
    std::string getBufferAsData(BufferKind kind = BufferKind::active) const;
    /// The link that a cell is part of: one that the program marked, or also an address in its text.
    std::optional<LinkMatch> link(Position at, LinkMode mode) const;
    CursorLocation getCursorLocation() const;  ///< on the screen
    bool isWrapPending() const;
    int getTopVisibleRow() const;
    /// The view onto the history; it follows the newest row while it shows it.
    void scrollTo(int yDisp);
    /// Keeps the view on what it shows now, also when that is the newest row.
    void holdView();
    /// Ends that, and brings the view to the newest row.
    void followNewest();

    // State.
    const TerminalModes& modes() const;
    const KeyboardModeState& keyboardMode() const;  ///< of the screen that is shown
    const KeyModifierOptions& keyModifiers() const;
    CursorStyle cursorStyle() const;
    TerminalConformance conformance() const;
    const std::string& terminalTitle() const;
    const std::string& iconTitle() const;
    const std::optional<std::string>& hostCurrentDirectory() const;
    const std::optional<std::string>& hostCurrentDocument() const;
    TerminalColor foregroundColor() const;
    TerminalColor backgroundColor() const;
    std::optional<TerminalColor> cursorColor() const;
    TerminalColor ansiColor(std::uint8_t index) const;
    /// The link of a cell, if it has one.
    const std::string* hyperlink(const StoredCell& cell) const { return cell.payload().target(); }
    std::size_t bytesInUse() const;

    // What has changed since `clearUpdateRange`: rows of the viewport, and the same rows as numbers that scrolling
    // does not change. Nothing when no row has.
    std::optional<RowRange> getUpdateRange() const;
    std::optional<RowRange> getScrollInvariantUpdateRange() const;
    void clearUpdateRange();
    void updateFullScreen();
    void refresh(int startRow, int endRow);

    // Output.
    void sendResponse(std::string_view bytes);
    /// Tells the program about the focus when it has asked for that.
    void setFocus(Focus focus);
    void sendFocusReport();
    /// The number that stands for a button (0 to 2, 4 to 7 for the wheel, 3 for none) in the protocol that is on.
    int encodeButton(int button, bool release, bool shift, bool meta, bool control) const;
    /// An event of the mouse at a cell, from 0, in the protocol that is on; pixels count for the one that wants them.
    void sendEvent(int buttonFlags, int x, int y, int pixelX, int pixelY);
    void sendMotion(int buttonFlags, int x, int y, int pixelX, int pixelY);

    /// Off by default: says on the standard error output what was not understood.
    void setSilentLog(bool isSilent);

 private:
    std::unique_ptr<TerminalEngine> engine_;
};

}  // namespace orvane
