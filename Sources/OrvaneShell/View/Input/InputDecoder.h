#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

#include "OrvaneShell/View/Input/InputEvent.h"
#include "OrvaneShell/View/Input/PasteDecoder.h"
#include "TerminalEmulator/Unicode/Utf8Decoder.h"

namespace orvane {

/// What a terminal sends, as events: keys in the forms of xterm, rxvt, the Linux console and of terminals with
/// progressive enhancements, the mouse, pastes, focus and answers. Any cut of the bytes between two calls gives the
/// same events, but for pieces of a paste. No bytes make it fail, and it holds at most `longestSequence` of them.
///
/// Two Escapes at once are two Escapes, unless a key's sequence follows: then they are that key with Alt.
class InputDecoder {
 public:
    /// Of a longer sequence the rest is dropped; its beginning is told as one that nobody knows.
    static constexpr std::size_t longestSequence = 4096;
    /// So many calls of `flush` a sequence waits for its rest: half a second when they are 25 ms apart.
    static constexpr int patience = 20;

    using Sink = std::function<void(const InputEvent&)>;

    /// The sink is called within the call; it must not call or destroy the decoder.
    void feed(std::string_view bytes, const Sink& sink);

    /// Whether something waits that may never go on: an escape, the beginning of a sequence or of a character. The
    /// caller calls `flush` some 25 ms later when nothing came, and again while this stays so.
    bool isPending() const;

    /// What waits is taken as typed: ESC alone is the Escape key, "ESC [" Alt-[. What nobody types, as "CSI 1 ;", waits
    /// on, as a slow line may have cut it; after `patience` calls it is given up, lest it eat what is typed next.
    void flush(const Sink& sink);

 private:
    enum class State : std::uint8_t {
        ground,
        character,
        escape,
        csi,
        ss3,
        console,
        x10Mouse,
        string,
        stringEscape,
        paste
    };
    enum class Taken : std::uint8_t {
        yes,
        no
    };  ///< a byte that ended a sequence without being of it is looked at anew

    Taken take(char byte, const Sink& sink);
    Taken takeGround(char byte, const Sink& sink);
    Taken takeCharacter(char byte, const Sink& sink);
    Taken takeEscape(char byte, const Sink& sink);
    Taken takeCsi(char byte, const Sink& sink);
    Taken takeSs3(char byte, const Sink& sink);
    Taken takeConsole(char byte, const Sink& sink);
    Taken takeX10Mouse(char byte, const Sink& sink);
    Taken takeString(char byte, const Sink& sink);
    Taken takeStringEscape(char byte, const Sink& sink);
    std::size_t takePaste(std::string_view bytes, const Sink& sink);

    void append(char byte);
    void finishCsi(const Sink& sink);
    void finishString(const Sink& sink);
    void beginPaste(const Sink& sink);
    void abort(const Sink& sink);

    bool isIntroducerAlone() const;
    void emitEscapeBefore(const Sink& sink);
    void emitKey(KeyEvent event, const Sink& sink);
    void emitMouse(MouseEvent event, const Sink& sink);
    void emitOther(const Sink& sink);
    void emit(const InputEvent& event, const Sink& sink);
    void reset();

    State state_ = State::ground;
    std::string sequence_;  ///< as far as it has come, without an Escape before it
    bool hasEscapeBefore_ = false;
    bool isOverlong_ = false;
    int flushes_ = 0;  ///< since the sequence began
    Utf8Decoder characters_;
    PasteDecoder paste_;
    MouseEvent::Button lastButton_ = MouseEvent::Button::none;
};

}  // namespace orvane
