#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <functional>
#include <limits>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "TerminalEmulator/Buffer/Buffer.h"
#include "TerminalEmulator/Buffer/ClusterTable.h"
#include "TerminalEmulator/Buffer/PayloadHolder.h"
#include "TerminalEmulator/Engine/CharsetState.h"
#include "TerminalEmulator/Engine/ColorState.h"
#include "TerminalEmulator/Engine/HeldModes.h"
#include "TerminalEmulator/Engine/TitleState.h"
#include "TerminalEmulator/Engine/UpdateRange.h"
#include "TerminalEmulator/Parser/ParserHandler.h"
#include "TerminalEmulator/TerminalDelegate.h"
#include "TerminalEmulator/TerminalModes.h"
#include "TerminalEmulator/TerminalOptions.h"
#include "TerminalEmulator/TerminalTimer.h"

namespace orvane {

/// What the control functions work on: the screens, everything that is switched on and off, and the few steps that
/// many functions share. The functions themselves are free functions beside it, one family a file.
class TerminalState {
 public:
    TerminalState(TerminalDelegate& surroundings, TerminalOptions wanted, TerminalTimer* clock);
    TerminalState(const TerminalState&) = delete;
    TerminalState& operator=(const TerminalState&) = delete;

    /// Which erasing a protected cell resists: none, ED and the like (SPA), or DECSED and the like (DECSCA).
    enum class ProtectedMode : std::uint8_t { off, iso, dec };
    /// What DECCARA and DECRARA change: the stream of characters between two places, or the rectangle.
    enum class AttributeExtent : std::uint8_t { stream, rectangle };

    TerminalDelegate& delegate;
    TerminalTimer* const timer;  ///< may be null
    TerminalOptions options;     ///< `cols` and `rows` follow the size

    ClusterTable clusters;
    PayloadHolder payloads;
    Buffer normalBuffer;
    Buffer altBuffer;
    Buffer* buffer = &normalBuffer;  ///< the screen that is shown

    TerminalModes modes;
    HeldModes heldModes;
    KeyboardModeState keyboardModeNormal;
    KeyboardModeState keyboardModeAlt;
    CursorStyle cursorStyle;
    TerminalConformance conformance = TerminalConformance::vt500;
    bool send8bit = false;  ///< answers use C1 controls (S8C1T)
    ProtectedMode protectedMode = ProtectedMode::off;
    AttributeExtent attributeExtent = AttributeExtent::stream;  ///< DECSACE
    int checksumExtension = 0;                                  ///< XTCHECKSUM
    CharsetState charsets;
    TitleState titles;
    ColorState colors;
    std::optional<std::string> hostCurrentDirectory;
    std::optional<std::string> hostCurrentDocument;
    UpdateRange updates;
    bool silentLog = true;
    bool hasDoubledRows = false;  ///< DECDWL or DECDHL was used since the last reset

    int cols() const { return options.cols; }
    int rows() const { return options.rows; }
    bool isAlternate() const { return buffer == &altBuffer; }
    KeyboardModeState& keyboardMode() { return isAlternate() ? keyboardModeAlt : keyboardModeNormal; }
    BufferLine cursorLine() { return buffer->line(buffer->y()); }
    StoredCell eraseFill() const { return buffer->pen.erased(); }

    // Where the cursor may go. Margins count only while DECLRMM is on.
    int leftMargin() const { return modes.marginMode ? buffer->marginLeft() : 0; }
    int rightMargin() const { return modes.marginMode ? buffer->marginRight() : cols() - 1; }
    bool hasFullWidth() const { return leftMargin() == 0 && rightMargin() == cols() - 1; }
    bool isCursorInColumns() const { return buffer->x() >= leftMargin() && buffer->x() <= rightMargin(); }
    /// Between the margins and in the rows of the region.
    bool isCursorInMargins() const;
    /// The last column of a row: of one that is drawn double width, there is half as much.
    int lastColumn(int y) const {
        if (!hasDoubledRows) return cols() - 1;
        const bool isSingle = buffer->line(y).renderMode() == RenderLineMode::single;
        return isSingle ? cols() - 1 : std::max(cols() / 2 - 1, 0);
    }
    /// To a column and row from 0, of the screen or under DECOM of the region; clamped to it.
    void moveTo(int col, int row);
    /// To a column and row of the screen, whatever the mode.
    void placeCursor(int col, int row) {
        buffer->setY(row);
        buffer->setX(std::min(col, lastColumn(buffer->y())));
        buffer->isWrapPending = false;
    }

    struct CursorPlace {
        int col = 0;
        int row = 0;
    };
    /// What CPR tells: the cursor from 0, under DECOM from the region's corner.
    CursorPlace reportedCursor() const;

    void index();         ///< IND: down, scrolling at the region's bottom
    void reverseIndex();  ///< RI
    void lineFeed();      ///< with what LNM adds to it
    void carriageReturn();
    /// The cursor to the row below for text that goes on there.
    void wrapLine();
    void scrollUp(int count);    ///< SU: the region, between the margins
    void scrollDown(int count);  ///< SD
    void insertLines(int top, int count);
    void deleteLines(int top, int count);

    void saveCursor();     ///< DECSC
    void restoreCursor();  ///< DECRC
    void resize(int cols, int rows);
    static constexpr int narrowColumns = 80;  ///< of DECCOLM
    static constexpr int wideColumns = 132;
    /// DECCOLM: the owner of the window is asked for the size; a program that is trusted need not wait for it.
    void resizeForProgram(int cols, int rows);
    /// Shows the screen, and tells the delegate when it is another one. The cursor stays where it is.
    void activate(Buffer& screen);
    void clearScreen(Buffer& screen);  ///< all rows, with the background in use; the history stays

    void markRow(int y) { markRows(y, y); }
    void markRows(int top, int bottom) { updates.add(top, bottom, topRowNumber()); }
    void markAll() { markRows(0, rows() - 1); }
    /// Of the screen's top row since the terminal began.
    std::int64_t topRowNumber() const { return static_cast<std::int64_t>(buffer->linesTop()) + buffer->yBase(); }

    void send(std::string_view bytes) { delegate.send(bytes); }
    /// CSI, in the form of 7 or 8 bits that the program has asked for, and the rest.
    void sendCsi(std::string_view rest);
    void sendDcs(std::string_view content);                 ///< with its terminator
    void sendOsc(std::string_view content, StringEnd end);  ///< ended as the question was

    /// Says what was not understood, unless `silentLog` is set.
    void log(std::string_view prefix, std::string_view bytes) const;

    /// Marks all payloads in use, for a collection.
    PayloadHolder::Mark markPayloads;

    void reset();      ///< RIS
    void softReset();  ///< DECSTR

 private:
    void resetModes();
    enum class Motion : std::uint8_t { up, down };
    void moveRows(int top, int count, Motion motion);
    void moveColumns(int top, int bottom, int count, Motion motion);
    void breakLineAt(int y);
    void markScroll(int top, int bottom, int count);
};

}  // namespace orvane
