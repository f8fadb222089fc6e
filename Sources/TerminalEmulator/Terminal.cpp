#include "TerminalEmulator/Terminal.h"

#include <algorithm>
#include <utility>

#include "TerminalEmulator/Engine/ColorFunctions.h"
#include "TerminalEmulator/Engine/FurtherColors.h"
#include "TerminalEmulator/Engine/InputReports.h"
#include "TerminalEmulator/Engine/TerminalEngine.h"
#include "TerminalEmulator/Links/LinkFinder.h"
#include "TerminalEmulator/LogicalLine.h"

namespace orvane {

Terminal::Terminal(TerminalDelegate& delegate, TerminalOptions options, TerminalTimer* timer)
    : engine_(std::make_unique<TerminalEngine>(delegate, std::move(options), timer)) {}

Terminal::~Terminal() {
    if (engine_->state.timer) engine_->state.timer->stop();
}

void Terminal::feed(std::string_view bytes) {
    engine_->feed(bytes);
}

void Terminal::feed(std::span<const std::uint8_t> bytes) {
    engine_->feed({reinterpret_cast<const char*>(bytes.data()), bytes.size()});
}

void Terminal::resize(int cols, int rows) {
    engine_->state.resize(cols, rows);
}

void Terminal::changeScrollback(std::optional<int> lines) {
    TerminalState& state = engine_->state;
    if (lines) lines = std::max(*lines, 0);
    state.options.scrollback = lines;
    // A buffer without scrollback would no longer lay its text out anew; one with none of it does.
    state.normalBuffer.changeHistorySize(lines.value_or(0));
    state.markAll();
}

void Terminal::resetToInitialState() {
    engine_->reset();
}

void Terminal::registerOscHandler(int code, OscHandler handler) {
    if (handler) {
        engine_->oscHandlers.insert_or_assign(code, std::move(handler));
    } else {
        engine_->oscHandlers.erase(code);
    }
}

void Terminal::registerFurtherColors() {
    for (auto& [code, handler] : furtherColorHandlers(engine_->state))
        registerOscHandler(code, std::move(handler));
}

int Terminal::cols() const {
    return engine_->state.cols();
}

int Terminal::rows() const {
    return engine_->state.rows();
}

const TerminalOptions& Terminal::options() const {
    return engine_->state.options;
}

const Buffer& Terminal::buffer() const {
    return *engine_->state.buffer;
}

const Buffer& Terminal::normalBuffer() const {
    return engine_->state.normalBuffer;
}

const Buffer& Terminal::altBuffer() const {
    return engine_->state.altBuffer;
}

bool Terminal::isAlternateBufferActive() const {
    return engine_->state.isAlternate();
}

const ClusterTable& Terminal::clusters() const {
    return engine_->state.clusters;
}

RowView Terminal::getLine(int row) const {
    return buffer().row(buffer().yDisp() + row);
}

RowView Terminal::getScrollInvariantLine(std::int64_t row) const {
    const std::int64_t index = row - static_cast<std::int64_t>(buffer().linesTop());
    return buffer().row(static_cast<int>(std::clamp<std::int64_t>(index, -1, buffer().count())));
}

std::optional<CharData> Terminal::getCharData(int col, int row) const {
    if (col < 0 || col >= cols() || row < 0 || row >= rows()) return {};
    return buffer().getChar(col, row);
}

std::string Terminal::getCharacter(int col, int row) const {
    const auto cell = getCharData(col, row);
    return cell && cell->code != 0 ? clusters().text(cell->code) : std::string{};
}

std::string Terminal::getText(Position start, Position end) const {
    return LogicalLine::text(buffer(), clusters(), start, end);
}

std::string Terminal::getBufferAsData(BufferKind kind) const {
    const Buffer& source = kind == BufferKind::active      ? buffer()
                           : kind == BufferKind::alternate ? altBuffer()
                                                           : normalBuffer();
    return LogicalLine::text(source, clusters(), {}, {.row = source.count(), .col = 0});
}

std::optional<LinkMatch> Terminal::link(Position at, LinkMode mode) const {
    return LinkFinder(buffer(), clusters()).link(at, mode);
}

Terminal::CursorLocation Terminal::getCursorLocation() const {
    return {buffer().x(), buffer().y()};
}

bool Terminal::isWrapPending() const {
    return buffer().isWrapPending;
}

int Terminal::getTopVisibleRow() const {
    return buffer().yDisp();
}

void Terminal::scrollTo(int yDisp) {
    TerminalState& state = engine_->state;
    const int before = state.buffer->yDisp();
    state.buffer->setYDisp(yDisp);
    if (state.buffer->yDisp() == before) return;
    state.markAll();
    state.delegate.scrolled(state.buffer->yDisp());
}

void Terminal::holdView() {
    engine_->state.normalBuffer.holdsView = true;
}

void Terminal::followNewest() {
    engine_->state.normalBuffer.holdsView = false;
    engine_->state.normalBuffer.setYDisp(engine_->state.normalBuffer.yBase());
    engine_->state.markAll();
    engine_->state.delegate.scrolled(engine_->state.buffer->yDisp());
}

const TerminalModes& Terminal::modes() const {
    return engine_->state.modes;
}

const KeyboardModeState& Terminal::keyboardMode() const {
    return engine_->state.keyboardMode();
}

const KeyModifierOptions& Terminal::keyModifiers() const {
    return engine_->state.heldModes.keyModifiers;
}

CursorStyle Terminal::cursorStyle() const {
    return engine_->state.cursorStyle;
}

TerminalConformance Terminal::conformance() const {
    return engine_->state.conformance;
}

const std::string& Terminal::terminalTitle() const {
    return engine_->state.titles.terminalTitle;
}

const std::string& Terminal::iconTitle() const {
    return engine_->state.titles.iconTitle;
}

const std::optional<std::string>& Terminal::hostCurrentDirectory() const {
    return engine_->state.hostCurrentDirectory;
}

const std::optional<std::string>& Terminal::hostCurrentDocument() const {
    return engine_->state.hostCurrentDocument;
}

TerminalColor Terminal::foregroundColor() const {
    return ColorFunctions::foreground(engine_->state);
}

TerminalColor Terminal::backgroundColor() const {
    return ColorFunctions::background(engine_->state);
}

std::optional<TerminalColor> Terminal::cursorColor() const {
    return engine_->state.colors.cursor;
}

TerminalColor Terminal::ansiColor(std::uint8_t index) const {
    return engine_->state.colors.ansiColors[index];
}

std::size_t Terminal::bytesInUse() const {
    const TerminalState& state = engine_->state;
    return sizeof(TerminalEngine) + state.normalBuffer.bytesInUse() + state.altBuffer.bytesInUse() +
           state.clusters.bytesInUse();
}

std::optional<Terminal::RowRange> Terminal::getUpdateRange() const {
    const UpdateRange& updates = engine_->state.updates;
    if (updates.isEmpty()) return {};
    return RowRange{updates.refreshStart, updates.refreshEnd};
}

std::optional<Terminal::RowRange> Terminal::getScrollInvariantUpdateRange() const {
    const UpdateRange& updates = engine_->state.updates;
    if (updates.isEmpty()) return {};
    return RowRange{updates.scrollInvariantRefreshStart, updates.scrollInvariantRefreshEnd};
}

void Terminal::clearUpdateRange() {
    engine_->state.updates = {};
}

void Terminal::updateFullScreen() {
    engine_->state.markAll();
}

void Terminal::refresh(int startRow, int endRow) {
    startRow = std::clamp(startRow, 0, rows() - 1);
    engine_->state.markRows(startRow, std::clamp(endRow, startRow, rows() - 1));
}

void Terminal::sendResponse(std::string_view bytes) {
    engine_->state.send(bytes);
}

void Terminal::setFocus(Focus focus) {
    if (std::exchange(engine_->focus, focus) != focus) sendFocusReport();
}

void Terminal::sendFocusReport() {
    InputReports::sendFocus(engine_->state, engine_->focus == Focus::in);
}

int Terminal::encodeButton(int button, bool release, bool shift, bool meta, bool control) const {
    using namespace InputReports;
    return InputReports::encodeButton(engine_->state, button, release ? Edge::release : Edge::press,
                                      {.shift = shift, .meta = meta, .control = control});
}

void Terminal::sendEvent(int buttonFlags, int x, int y, int pixelX, int pixelY) {
    InputReports::sendButton(engine_->state, buttonFlags, {x, y, pixelX, pixelY});
}

void Terminal::sendMotion(int buttonFlags, int x, int y, int pixelX, int pixelY) {
    InputReports::sendMotion(engine_->state, buttonFlags, {x, y, pixelX, pixelY});
}

void Terminal::setSilentLog(bool isSilent) {
    engine_->state.silentLog = isSilent;
}

}  // namespace orvane
