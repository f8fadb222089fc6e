#include "TerminalEmulator/Engine/TerminalState.h"

#include <algorithm>
#include <cstdio>
#include <utility>

namespace orvane {

namespace {

TerminalOptions clamped(TerminalOptions options) {
    options.cols = std::clamp(options.cols, Buffer::minimumCols, Buffer::maximumSize);
    options.rows = std::clamp(options.rows, Buffer::minimumRows, Buffer::maximumSize);
    options.tabStopWidth = std::max(options.tabStopWidth, 0);
    if (options.scrollback) options.scrollback = std::max(*options.scrollback, 0);
    return options;
}

}  // namespace

TerminalState::TerminalState(TerminalDelegate& surroundings, TerminalOptions wanted, TerminalTimer* clock)
    : delegate(surroundings),
      timer(clock),
      options(clamped(std::move(wanted))),
      normalBuffer(options.cols, options.rows, options.tabStopWidth, options.scrollback.value_or(0)),
      altBuffer(options.cols, options.rows, options.tabStopWidth, std::nullopt),
      cursorStyle(options.cursorStyle),
      colors(options.ansi256PaletteStrategy),
      markPayloads([this](PayloadSet& set) {
          normalBuffer.markPayloads(set);
          altBuffer.markPayloads(set);
      }) {
    normalBuffer.fillViewportRows();  // those of the alternate screen come when it is first shown
    resetModes();
}

bool TerminalState::isCursorInMargins() const {
    return isCursorInColumns() && buffer->y() >= buffer->scrollTop() && buffer->y() <= buffer->scrollBottom();
}

void TerminalState::moveTo(int col, int row) {
    if (!modes.originMode) {
        placeCursor(col, row);
        return;
    }
    placeCursor(std::clamp(leftMargin() + col, leftMargin(), rightMargin()),
                std::clamp(buffer->scrollTop() + row, buffer->scrollTop(), buffer->scrollBottom()));
}

TerminalState::CursorPlace TerminalState::reportedCursor() const {
    if (!modes.originMode) return {buffer->x(), buffer->y()};
    return {std::max(buffer->x() - leftMargin(), 0), std::max(buffer->y() - buffer->scrollTop(), 0)};
}

void TerminalState::index() {
    const int y = buffer->y();
    buffer->isWrapPending = false;
    if (y != buffer->scrollBottom()) {
        buffer->setY(y + 1);
    } else if (isCursorInColumns()) {
        scrollUp(1);
    }
}

void TerminalState::reverseIndex() {
    const int y = buffer->y();
    buffer->isWrapPending = false;
    if (y != buffer->scrollTop()) {
        buffer->setY(y - 1);
    } else if (isCursorInColumns()) {
        scrollDown(1);
    }
}

void TerminalState::lineFeed() {
    if (options.convertEol || modes.lineFeedMode) carriageReturn();
    index();
    delegate.linefeed();
}

/// To the left margin, but from the left of it, unless DECOM keeps the cursor inside, to the first column.
void TerminalState::carriageReturn() {
    const int left = leftMargin();
    buffer->setX(buffer->x() < left && !modes.originMode ? 0 : left);
    buffer->isWrapPending = false;
}

void TerminalState::wrapLine() {
    buffer->isWrapPending = false;
    const int y = buffer->y();
    if (y == buffer->scrollBottom() && hasFullWidth()) {
        const int top = buffer->scrollTop();
        buffer->scrollUp(top, y, eraseFill(), Buffer::NewRow::continues);
        if (top > 0) breakLineAt(top);
        if (y < rows() - 1) breakLineAt(y + 1);
        markScroll(top, y, 1);
    } else {
        const bool scrolls = y == buffer->scrollBottom() && isCursorInColumns();
        index();
        if (scrolls || buffer->y() != y) cursorLine().setIsWrapped(true);
        markRow(buffer->y());
    }
    buffer->setX(leftMargin());
}

void TerminalState::scrollUp(int count) {
    const int top = buffer->scrollTop();
    const int bottom = buffer->scrollBottom();
    count = std::clamp(count, 0, bottom - top + 1);
    if (!hasFullWidth()) {
        moveColumns(top, bottom, count, Motion::up);
        return;
    }
    const StoredCell fill = eraseFill();
    for (int step = 0; step < count; ++step)
        buffer->scrollUp(top, bottom, fill);
    if (top > 0) breakLineAt(top);
    if (bottom < rows() - 1) breakLineAt(bottom + 1);
    markScroll(top, bottom, count);
}

void TerminalState::scrollDown(int count) {
    insertLines(buffer->scrollTop(), count);
}

void TerminalState::insertLines(int top, int count) {
    moveRows(top, count, Motion::down);
}

void TerminalState::deleteLines(int top, int count) {
    moveRows(top, count, Motion::up);
}

/// Rows from `top` to the region's bottom; none goes into the history.
void TerminalState::moveRows(int top, int count, Motion motion) {
    const int bottom = buffer->scrollBottom();
    count = std::clamp(count, 0, bottom - top + 1);
    if (!hasFullWidth()) {
        moveColumns(top, bottom, count, motion);
        return;
    }
    const StoredCell fill = eraseFill();
    for (int step = 0; step < count; ++step) {
        if (motion == Motion::up) {
            buffer->deleteRow(top, bottom, fill);
        } else {
            buffer->insertRow(top, bottom, fill);
        }
    }
    breakLineAt(motion == Motion::up ? top : top + count);
    breakLineAt(bottom + 1);
    markRows(top, bottom);
}

/// The row no longer continues the one above it, which is another one now.
void TerminalState::breakLineAt(int y) {
    if (y < rows()) buffer->line(y).setIsWrapped(false);
}

void TerminalState::markScroll(int top, int bottom, int count) {
    if (top == 0 && bottom == rows() - 1 && buffer->hasScrollback()) {
        updates.addScroll(rows(), count, topRowNumber());
    } else {
        markRows(top, bottom);
    }
}

/// The same between the margins. Each row takes its cells before they are overwritten.
void TerminalState::moveColumns(int top, int bottom, int count, Motion motion) {
    const int left = leftMargin();
    const int width = rightMargin() - left + 1;
    for (int step = 0; step <= bottom - top; ++step) {
        const int y = motion == Motion::up ? top + step : bottom - step;
        const int source = motion == Motion::up ? y + count : y - count;
        BufferLine line = buffer->line(y);
        if (source >= top && source <= bottom) {
            line.copyFrom(buffer->line(source).view(), left, left, width);
        } else {
            line.replaceCells(left, left + width, eraseFill());
        }
    }
    markRows(top, bottom);
}

void TerminalState::saveCursor() {
    std::array<std::uint8_t, 4> sets{};
    std::ranges::transform(charsets.gCharsets, sets.begin(), [](Charset set) { return std::to_underlying(set); });
    buffer->saved = {.x = buffer->x(),
                     .y = buffer->y(),
                     .isWrapPending = buffer->isWrapPending,
                     .originMode = modes.originMode,
                     .wraparound = modes.wraparound,
                     .pen = buffer->pen,
                     .charsets = sets,
                     .charsetLevel = charsets.gLevel};
}

void TerminalState::restoreCursor() {
    const Buffer::SavedCursor& saved = buffer->saved;
    modes.originMode = saved.originMode;
    modes.wraparound = saved.wraparound;
    buffer->pen = saved.pen;
    std::ranges::transform(saved.charsets, charsets.gCharsets.begin(),
                           [](std::uint8_t set) { return static_cast<Charset>(set); });
    charsets.gLevel = saved.charsetLevel;
    charsets.singleShift.reset();
    placeCursor(saved.x, saved.y);
    buffer->isWrapPending = saved.isWrapPending && buffer->x() == saved.x;
}

void TerminalState::resize(int cols, int rows) {
    cols = std::clamp(cols, Buffer::minimumCols, Buffer::maximumSize);
    rows = std::clamp(rows, Buffer::minimumRows, Buffer::maximumSize);
    if (cols == options.cols && rows == options.rows) return;
    const int oldCols = std::exchange(options.cols, cols);
    options.rows = rows;
    for (Buffer* screen : {&normalBuffer, &altBuffer}) {
        screen->resize(cols, rows);
        if (cols > oldCols) screen->tabStops.setup(oldCols, options.tabStopWidth);
        screen->setMarginLeft(0);
        screen->setMarginRight(cols - 1);
    }
    updates = {};
    markAll();
    delegate.sizeChanged(cols, rows);
}

void TerminalState::resizeForProgram(int cols, int rows) {
    delegate.windowCommand({WindowManipulationCommand::ResizeTerminal{.cols = cols, .rows = rows}});
    if (delegate.isProcessTrusted()) resize(cols, rows);
}

void TerminalState::activate(Buffer& screen) {
    if (buffer == &screen) return;
    screen.fillViewportRows();
    screen.setX(buffer->x());
    screen.setY(buffer->y());
    screen.isWrapPending = buffer->isWrapPending;
    screen.pen = buffer->pen;
    screen.setScrollTop(buffer->scrollTop());
    screen.setScrollBottom(buffer->scrollBottom());
    screen.setMarginLeft(buffer->marginLeft());
    screen.setMarginRight(buffer->marginRight());
    screen.tabStops = buffer->tabStops;
    buffer = &screen;
    markAll();
    delegate.bufferActivated();
}

void TerminalState::clearScreen(Buffer& screen) {
    const StoredCell fill = eraseFill();
    for (int y = 0; y < rows(); ++y) {
        BufferLine line = screen.line(y);
        line.fill(fill);
        line.setIsWrapped(false);
        line.setRenderMode(RenderLineMode::single);
        line.setStartsPrompt(false);
    }
    if (&screen == buffer) markAll();
}

void TerminalState::sendCsi(std::string_view rest) {
    std::string bytes(send8bit ? "\x9B" : "\x1B[");
    delegate.send(bytes.append(rest));
}

void TerminalState::sendDcs(std::string_view content) {
    std::string bytes(send8bit ? "\x90" : "\x1BP");
    delegate.send(bytes.append(content).append(send8bit ? "\x9C" : "\x1B\\"));
}

void TerminalState::sendOsc(std::string_view content, StringEnd end) {
    std::string bytes(send8bit ? "\x9D" : "\x1B]");
    const std::string_view terminator = send8bit ? "\x9C" : "\x1B\\";
    delegate.send(bytes.append(content).append(end == StringEnd::bell ? "\a" : terminator));
}

void TerminalState::log(std::string_view prefix, std::string_view bytes) const {
    if (silentLog) return;
    std::string line(prefix);
    for (const char byte : bytes) {
        const auto code = static_cast<unsigned char>(byte);
        if (code >= 0x20 && code < 0x7F) {
            line += byte;
        } else {
            constexpr std::string_view digits = "0123456789abcdef";
            line += {'\\', 'x', digits[code >> 4], digits[code & 15]};
        }
    }
    line += '\n';
    std::fwrite(line.data(), 1, line.size(), stderr);
}

void TerminalState::resetModes() {
    modes = {};
    heldModes = {};
    keyboardModeNormal = {};
    keyboardModeAlt = {};
    cursorStyle = options.cursorStyle;
    modes.cursorBlink = cursorStyle == CursorStyle::blinkBlock || cursorStyle == CursorStyle::blinkUnderline ||
                        cursorStyle == CursorStyle::blinkBar;
    conformance = TerminalConformance::vt500;
    send8bit = false;
    protectedMode = ProtectedMode::off;
    attributeExtent = AttributeExtent::stream;
    checksumExtension = 0;
    charsets = {};
    hasDoubledRows = false;
}

void TerminalState::reset() {
    const bool wasSynchronized = modes.synchronizedOutputActive;
    const bool wasHidden = modes.cursorHidden;
    const bool hadMouse = modes.mouseMode != MouseMode::off;
    const bool wasAlternate = isAlternate();
    if (modes.is132Columns) resizeForProgram(narrowColumns, rows());
    resetModes();
    titles.terminalTitleStack.clear();
    titles.terminalIconStack.clear();
    colors.reset();
    clusters.reset();
    for (Buffer* screen : {&altBuffer, &normalBuffer}) {
        buffer = screen;
        screen->clear();
        screen->saved = {};
        screen->pen = {};
        screen->tabStops.setup(-1, options.tabStopWidth);
    }
    normalBuffer.fillViewportRows();
    payloads.collect(markPayloads);
    updates = {};
    markAll();
    if (timer && wasSynchronized) timer->stop();
    if (wasSynchronized) delegate.synchronizedOutputChanged(false);
    if (wasHidden) delegate.showCursor();
    if (hadMouse) delegate.mouseModeChanged();
    if (wasAlternate) delegate.bufferActivated();
    delegate.cursorStyleChanged(cursorStyle);
    delegate.colorChanged({});
}

void TerminalState::softReset() {
    if (modes.cursorHidden) delegate.showCursor();
    modes.cursorHidden = false;
    modes.insertMode = false;
    modes.originMode = false;
    modes.wraparound = true;
    modes.reverseWraparound = false;
    modes.extendedReverseWraparound = false;
    modes.applicationKeypad = false;
    modes.applicationCursor = false;
    protectedMode = ProtectedMode::off;
    charsets = {};
    keyboardMode() = {};
    buffer->softReset();
    buffer->setScrollBottom(rows() - 1);
    buffer->pen = {};
    buffer->isWrapPending = false;
}

}  // namespace orvane
