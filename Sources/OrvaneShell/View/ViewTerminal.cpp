#include "OrvaneShell/View/ViewTerminal.h"

#include <algorithm>
#include <array>
#include <utility>

#include "OrvaneShell/View/ViewModes.h"

namespace orvane {

namespace {

using namespace std::chrono_literals;

constexpr std::size_t readSize = 16 << 10;
/// How long the rest of a sequence may take behind its escape before that counts as the key.
constexpr Duration escapePatience = 25ms;
/// Beside a frame that waits.
constexpr std::size_t mostUnsent = 4 << 20;
/// Before the terminal has told any.
constexpr int defaultCols = 80;
constexpr int defaultRows = 24;
/// Larger ones are nobody's.
constexpr int largestSide = 1000;
constexpr int synchronizedOutputMode = 2026;

int side(int told, int otherwise) {
    return told <= 0 ? otherwise : std::min(told, largestSide);
}

}  // namespace

ViewTerminal::ViewTerminal(MainLoop& loop, TerminalDevice device, const OuterTerminal& features, Callbacks callbacks)
    : loop_(loop),
      device_(std::move(device)),
      features_(features),
      callbacks_(std::move(callbacks)),
      writer_(features),
      canvas_(defaultCols, defaultRows) {}

void ViewTerminal::start() {
    isStarted_ = true;
    (void)device_.makeRaw();  // a terminal that is gone says so when it is read
    if (!isPlain()) send(viewKeepTitleText());
    enter();
    readWatch_ = loop_.watch(device_.descriptor(), Readiness::readable, [this] { readInput(); });
    noteSize();
}

void ViewTerminal::enter() {
    if (!isPlain()) return send(viewEnterText(features_.mouse ? MouseReports::wanted : MouseReports::none));
    if (features_.positionsCursor) send(plainEnterText());
}

void ViewTerminal::stop() {
    isStarted_ = false;
    readWatch_.reset();
    writeWatch_.reset();
    frameTimer_.reset();
    inputTimer_.reset();
}

void ViewTerminal::giveBack() {
    stop();
    if (!isPlain() || features_.positionsCursor) (void)device_.write(isPlain() ? plainLeaveText() : viewLeaveText());
    (void)device_.restore();
}

void ViewTerminal::readInput() {
    std::array<char, readSize> room;
    const auto length = device_.read(room);
    if (!length) return lose();
    if (*length == 0) return;
    inputTimer_.reset();
    decoder_.feed({room.data(), *length}, [this](const InputEvent& event) { events_.push_back(event); });
    dispatch();
}

/// An event may end the view, and with it this.
void ViewTerminal::dispatch() {
    const std::weak_ptr<bool> alive = isAlive_;
    for (const InputEvent& event : std::exchange(events_, {})) {
        callbacks_.onInput(event);
        if (alive.expired() || !isStarted_) return;
    }
    if (!decoder_.isPending()) return;
    inputTimer_ = loop_.after(escapePatience, [this] {
        decoder_.flush([this](const InputEvent& event) { events_.push_back(event); });
        dispatch();
    });
}

void ViewTerminal::lose() {
    stop();
    // The copy outlives this.
    const auto gone = callbacks_.onGone;
    gone();
}

void ViewTerminal::noteSize() {
    sizeChanged_ = true;
    requestFrame();
}

void ViewTerminal::redraw() {
    (void)device_.makeRaw();
    enter();
    writer_.invalidate();
    noteSize();
}

void ViewTerminal::requestFrame(Haste haste) {
    if (!isStarted_ || (wanted_ && *wanted_ >= haste)) return;
    wanted_ = haste;
    if (unsent_.empty()) schedule();  // else it comes when the one before has gone out
}

void ViewTerminal::schedule() {
    const Instant now = loop_.now();
    const Instant promptAt = std::max(lineFreeAt_, nextFrameAt_ - mostBorrowed * frameInterval);
    const Instant pacedAt = isPlain() ? std::max(now, lineFreeAt_) + plainInterval : nextFrameAt_;
    const Duration wait = (wanted_ == Haste::prompt ? promptAt : pacedAt) - now;
    frameTimer_.reset();
    if (wait > Duration{}) {
        frameTimer_ = loop_.after(wait, [this] { draw(); });
        return;
    }
    // In this turn more may change. A timer would do as well, but takes three calls of the system to come at once.
    loop_.post([this, alive = std::weak_ptr(isAlive_)] {
        if (!alive.expired() && isStarted_ && wanted_) draw();
    });
}

void ViewTerminal::draw() {
    wanted_.reset();
    if (const auto size = std::exchange(sizeChanged_, false) ? device_.size() : std::nullopt) {
        const int cols = side(size->cols, defaultCols);
        const int rows = side(size->rows, defaultRows);
        if (cols != canvas_.cols() || rows != canvas_.rows()) canvas_.resize(cols, rows);
    }
    callbacks_.paint(canvas_);
    if (!isStarted_) return;
    const std::string frame = isPlain() ? callbacks_.plainFrame(canvas_) : writer_.frame(canvas_);
    if (frame.empty()) return;
    const Duration sending(static_cast<std::int64_t>(static_cast<double>(frame.size()) / bytesPerSecond * 1e9));
    const Instant now = loop_.now();
    lineFreeAt_ = now + sending;
    nextFrameAt_ = std::max(std::max(now, nextFrameAt_) + frameInterval, lineFreeAt_);
    unsent_ += frame;
    flush();
}

void ViewTerminal::send(std::string_view bytes) {
    if (!isStarted_ || unsent_.size() + bytes.size() > mostUnsent) return;
    unsent_ += bytes;
    flush();
}

void ViewTerminal::flush() {
    std::size_t sent = 0;
    while (sent < unsent_.size()) {
        const auto length = device_.write(std::string_view(unsent_).substr(sent));
        if (!length) {
            // Not here, where a caller may still be at work; reading finds out the same.
            unsent_.clear();
            return;
        }
        if (*length == 0) break;
        sent += *length;
    }
    unsent_.erase(0, sent);
    if (unsent_.empty()) {
        writeWatch_.reset();
        if (wanted_) schedule();
    } else if (!writeWatch_) {
        writeWatch_ = loop_.watch(device_.descriptor(), Readiness::writable, [this] { flush(); });
    }
}

void ViewTerminal::trackMotion(bool isWanted) {
    if (isPlain() || !features_.mouse) return;
    if (std::exchange(tracksMotion_, isWanted) != isWanted) send(viewMotionText(isWanted));
}

void ViewTerminal::noteReply(const ReplyEvent& reply) {
    if (reply.kind == ReplyEvent::Kind::modeReport && reply.parameters.size() == 2 &&
        reply.parameters[0] == synchronizedOutputMode) {
        // Set and reset mean that it knows the mode; 0 and 4 that it does not, or never will.
        features_.synchronizedOutput = reply.parameters[1] == 1 || reply.parameters[1] == 2;
        writer_.setFeatures(features_);
        requestFrame();
    } else if (reply.kind == ReplyEvent::Kind::keyboardFlags) {
        // It answers at all, so it knows the enhancements.
        send(viewKeyboardText());
    }
}

}  // namespace orvane
