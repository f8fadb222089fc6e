#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "OrvaneShell/View/Canvas.h"
#include "OrvaneShell/View/FrameWriter.h"
#include "OrvaneShell/View/Input/InputDecoder.h"
#include "Platform/MainLoop.h"
#include "Platform/TerminalDevice.h"

namespace orvane {

/// The terminal of a client: what it shows and what is typed into it. Frames go out when it has taken the one before,
/// at most 60 in a second and never more bytes in a second than a line of middling quality carries; so a terminal that
/// does not read gets nothing and costs nothing, and once it reads again it gets what is there then. Main thread only.
class ViewTerminal {
 public:
    static constexpr Duration frameInterval = std::chrono::microseconds(16'667);
    /// So many frames may be ahead of their time, when they answer keys.
    static constexpr int mostBorrowed = 3;
    /// Of plain lines: what changes on the way is not worth reading.
    static constexpr Duration plainInterval = std::chrono::milliseconds(200);
    /// What a flood may send; the next frame waits until this one would have gone out at that rate.
    static constexpr double bytesPerSecond = 1 << 20;

    struct Callbacks {
        std::function<void(const InputEvent&)> onInput;
        /// Draws what is to be seen now; the canvas has the size of the terminal and holds what the last call left.
        std::function<void(Canvas&)> paint;
        /// The terminal is gone. May destroy this.
        std::function<void()> onGone;
        /// For a terminal that is not drawn on: what it is to read after `paint`, in lines. It is left in its own
        /// screen and modes; only a pasted text stays together where the terminal can do that.
        std::function<std::string(const Canvas&)> plainFrame = {};
    };

    /// Shows nothing before `start`. The loop must outlive it.
    ViewTerminal(MainLoop& loop, TerminalDevice device, const OuterTerminal& features, Callbacks callbacks);
    ViewTerminal(const ViewTerminal&) = delete;
    ViewTerminal& operator=(const ViewTerminal&) = delete;

    /// Takes the terminal over: raw, on its alternate screen.
    void start();
    /// Lets go of it; `giveBack` also leaves the alternate screen and restores the settings, for a client that cannot.
    void stop();
    void giveBack();

    enum class Haste {
        paced,
        /// Somebody waits for it who has typed: goes out as soon as the line is free, and those behind it wait longer.
        prompt,
    };
    /// Something has changed that the terminal shows.
    void requestFrame(Haste haste = Haste::paced);
    /// The size may have changed.
    void noteSize();
    /// Somebody else may have written to the terminal.
    void redraw();
    /// Bytes beside the frames: a bell, the clipboard. Dropped when the terminal takes nothing.
    void send(std::string_view bytes);
    /// Whether the program under the mouse wants to know where it is also without a button.
    void trackMotion(bool isWanted);
    /// An answer of the terminal about itself.
    void noteReply(const ReplyEvent& reply);

 private:
    bool isPlain() const { return callbacks_.plainFrame != nullptr; }
    void enter();
    void readInput();
    void dispatch();
    void schedule();
    void draw();
    void flush();
    void lose();

    MainLoop& loop_;
    TerminalDevice device_;
    OuterTerminal features_;
    Callbacks callbacks_;
    InputDecoder decoder_;
    std::vector<InputEvent> events_;
    FrameWriter writer_;
    Canvas canvas_;
    std::string unsent_;
    Instant nextFrameAt_;
    Instant lineFreeAt_;  ///< when the frame before has gone out at the rate that is allowed
    std::optional<Haste> wanted_;
    bool sizeChanged_ = false;
    bool tracksMotion_ = false;
    bool isStarted_ = false;
    std::shared_ptr<bool> isAlive_ = std::make_shared<bool>(true);
    Registration readWatch_;
    Registration writeWatch_;
    Registration frameTimer_;
    Registration inputTimer_;
};

}  // namespace orvane
