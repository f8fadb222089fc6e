#include "OrvaneShell/View/Input/InputDecoder.h"

#include <utility>

#include "OrvaneShell/View/Input/KeyCharacters.h"
#include "OrvaneShell/View/Input/SequenceMeaning.h"

namespace orvane {

namespace {

constexpr char escape = '\x1b';

/// The key that a terminal without enhancements means by a byte of ASCII.
KeyEvent keyOfByte(char byte) {
    switch (byte) {
        case '\0':
            return {.character = U' ', .modifiers = {.control = true}};
        case '\b':
        case '\x7f':
            return {.name = KeyName::backspace};
        case '\t':
            return {.name = KeyName::tab};
        case '\r':
            return {.name = KeyName::enter};
        case escape:
            return {.name = KeyName::escape};
        default:
            break;
    }
    const auto code = static_cast<char32_t>(static_cast<unsigned char>(byte));
    if (code >= 0x20) return {.character = code};
    return {.character = lowerCase(code + 0x40), .modifiers = {.control = true}};
}

bool isFinal(char byte) {
    return byte >= '@' && byte <= '~';
}

bool isControl(char byte) {
    return (byte >= 0 && byte < ' ') || byte == '\x7f';
}

/// "CSI 23 $", which rxvt ends where others only begin their intermediates.
bool isRxvtKey(std::string_view sequence) {
    const std::string_view number = sequence.substr(2);
    return !number.empty() && number.size() <= 2 && number.find_first_not_of("0123456789") == std::string_view::npos;
}

}  // namespace

void InputDecoder::feed(std::string_view bytes, const Sink& sink) {
    while (!bytes.empty()) {
        if (state_ == State::paste) {
            bytes.remove_prefix(takePaste(bytes, sink));
        } else if (take(bytes.front(), sink) == Taken::yes) {
            bytes.remove_prefix(1);
        }
    }
}

bool InputDecoder::isPending() const {
    return state_ != State::ground && state_ != State::paste;
}

void InputDecoder::flush(const Sink& sink) {
    if (!isPending()) return;
    if (state_ == State::character) {
        characters_.reset();
        emitKey({.character = Utf8Decoder::replacementCharacter}, sink);
    } else if (state_ == State::escape) {
        emitEscapeBefore(sink);
        emitKey({.name = KeyName::escape}, sink);
    } else if (isIntroducerAlone() || ++flushes_ >= patience) {
        abort(sink);
    }
}

InputDecoder::Taken InputDecoder::take(char byte, const Sink& sink) {
    switch (state_) {
        case State::character:
            return takeCharacter(byte, sink);
        case State::escape:
            return takeEscape(byte, sink);
        case State::csi:
            return takeCsi(byte, sink);
        case State::ss3:
            return takeSs3(byte, sink);
        case State::console:
            return takeConsole(byte, sink);
        case State::x10Mouse:
            return takeX10Mouse(byte, sink);
        case State::string:
            return takeString(byte, sink);
        case State::stringEscape:
            return takeStringEscape(byte, sink);
        case State::ground:
        case State::paste:
            break;
    }
    return takeGround(byte, sink);
}

InputDecoder::Taken InputDecoder::takeGround(char byte, const Sink& sink) {
    if (byte == escape) {
        append(byte);
        state_ = State::escape;
        return Taken::yes;
    }
    state_ = State::character;
    return takeCharacter(byte, sink);
}

/// With Alt when an escape stands before it.
InputDecoder::Taken InputDecoder::takeCharacter(char byte, const Sink& sink) {
    const bool wasPending = characters_.isPending();
    char32_t scalar = 0;
    int count = 0;
    characters_.decode({&byte, 1}, [&](char32_t decoded) {
        scalar = decoded;
        ++count;
    });
    // Of a sequence that the byte cannot continue the decoder tells first, and of the byte itself then.
    if (wasPending && count > 0 && (count == 2 || characters_.isPending())) {
        characters_.reset();
        emitKey({.character = Utf8Decoder::replacementCharacter}, sink);
        return Taken::no;
    }
    append(byte);
    if (count == 0) return Taken::yes;
    emitKey(scalar < 0x80 ? keyOfByte(byte) : KeyEvent{.character = scalar}, sink);
    return Taken::yes;
}

InputDecoder::Taken InputDecoder::takeEscape(char byte, const Sink& sink) {
    if (byte == escape) {
        emitEscapeBefore(sink);
        hasEscapeBefore_ = true;
        return Taken::yes;
    }
    if (byte == '[' || byte == 'O') {
        append(byte);
        state_ = byte == '[' ? State::csi : State::ss3;
        return Taken::yes;
    }
    emitEscapeBefore(sink);
    // OSC, DCS and APC; terminals send no other strings, and Alt-X and Alt-^ are keys.
    if (byte == ']' || byte == 'P' || byte == '_') {
        append(byte);
        state_ = State::string;
        return Taken::yes;
    }
    state_ = State::character;
    return takeCharacter(byte, sink);
}

InputDecoder::Taken InputDecoder::takeCsi(char byte, const Sink& sink) {
    if (isControl(byte) || byte < 0) {
        abort(sink);
        return Taken::no;
    }
    const bool isFirst = isIntroducerAlone();
    const bool isEnd = isFinal(byte) || (byte == '$' && isRxvtKey(sequence_));
    append(byte);
    if (isFirst && byte == '[') {
        state_ = State::console;
    } else if (isFirst && byte == 'M') {
        state_ = State::x10Mouse;
    } else if (isEnd) {
        finishCsi(sink);
    }
    return Taken::yes;
}

InputDecoder::Taken InputDecoder::takeSs3(char byte, const Sink& sink) {
    const bool isParameter = (byte >= '0' && byte <= '9') || byte == ';';
    if (!isParameter && !isFinal(byte)) {
        abort(sink);
        return Taken::no;
    }
    append(byte);
    if (isParameter) return Taken::yes;
    if (auto key = SequenceMeaning::ss3Key(std::string_view(sequence_).substr(2)); key && !isOverlong_) {
        emitKey(std::move(*key), sink);
    } else {
        emitOther(sink);
    }
    return Taken::yes;
}

InputDecoder::Taken InputDecoder::takeConsole(char byte, const Sink& sink) {
    if (!isFinal(byte)) {
        abort(sink);
        return Taken::no;
    }
    append(byte);
    if (auto key = SequenceMeaning::consoleKey(byte)) {
        emitKey(std::move(*key), sink);
    } else {
        emitOther(sink);
    }
    return Taken::yes;
}

InputDecoder::Taken InputDecoder::takeX10Mouse(char byte, const Sink& sink) {
    constexpr std::size_t wholeSize = 6;
    if (byte >= 0 && byte < ' ') {
        abort(sink);
        return Taken::no;
    }
    append(byte);
    if (sequence_.size() < wholeSize) return Taken::yes;
    if (const auto event = SequenceMeaning::x10Mouse(std::string_view(sequence_).substr(3))) {
        emitMouse(*event, sink);
    } else {
        emitOther(sink);
    }
    return Taken::yes;
}

/// A string of a terminal holds no control character: one that comes ends it, so that Enter or Ctrl-C get through
/// when the rest of an answer was lost.
InputDecoder::Taken InputDecoder::takeString(char byte, const Sink& sink) {
    constexpr char bell = '\x07';
    if (byte == escape) {
        state_ = State::stringEscape;
    } else if (byte == bell) {
        append(byte);
        finishString(sink);
    } else if (isControl(byte)) {
        abort(sink);
        return Taken::no;
    } else {
        append(byte);
    }
    return Taken::yes;
}

InputDecoder::Taken InputDecoder::takeStringEscape(char byte, const Sink& sink) {
    if (byte != '\\') {
        state_ = State::string;
        abort(sink);
        append(escape);
        state_ = State::escape;
        return Taken::no;
    }
    append(escape);
    append(byte);
    finishString(sink);
    return Taken::yes;
}

std::size_t InputDecoder::takePaste(std::string_view bytes, const Sink& sink) {
    PasteDecoder::Result result = paste_.feed(bytes);
    if (result.event.isLast) reset();
    if (result.event.isLast || !result.event.text.empty()) sink(result.event);
    return result.taken;
}

void InputDecoder::append(char byte) {
    if (sequence_.size() < longestSequence) {
        sequence_ += byte;
    } else {
        isOverlong_ = true;
    }
}

void InputDecoder::finishCsi(const Sink& sink) {
    const auto sequence = isOverlong_ ? std::nullopt : readControlSequence(std::string_view(sequence_).substr(2));
    if (!sequence) return emitOther(sink);
    if (sequence_ == "\x1b[200~") {
        beginPaste(sink);
    } else if (const auto mouse = SequenceMeaning::mouse(*sequence)) {
        emitMouse(*mouse, sink);
    } else if (const auto focus = SequenceMeaning::focus(*sequence)) {
        emit(*focus, sink);
    } else if (const auto reply = SequenceMeaning::reply(*sequence, sequence_)) {
        emit(*reply, sink);
    } else if (auto key = SequenceMeaning::key(*sequence)) {
        emitKey(std::move(*key), sink);
    } else {
        emitOther(sink);
    }
}

void InputDecoder::finishString(const Sink& sink) {
    if (isOverlong_) {
        emitOther(sink);
    } else {
        emit(SequenceMeaning::stringReply(sequence_), sink);
    }
}

void InputDecoder::beginPaste(const Sink& sink) {
    emitEscapeBefore(sink);
    reset();
    paste_ = {};
    state_ = State::paste;
}

/// Ends what did not end by itself: its introducer alone is a key with Alt.
void InputDecoder::abort(const Sink& sink) {
    const bool hasEscapeAfter = state_ == State::stringEscape;
    if (sequence_.size() == 2) {
        emitEscapeBefore(sink);
        state_ = State::character;
        emitKey(keyOfByte(sequence_[1]), sink);
    } else {
        emitOther(sink);
    }
    if (hasEscapeAfter) sink(KeyEvent{.name = KeyName::escape, .bytes = std::string(1, escape)});
}

bool InputDecoder::isIntroducerAlone() const {
    return sequence_.size() == 2 && state_ != State::stringEscape;
}

/// The Escape that was kept to see whether it makes the key behind it one with Alt.
void InputDecoder::emitEscapeBefore(const Sink& sink) {
    if (!std::exchange(hasEscapeBefore_, false)) return;
    sink(KeyEvent{.name = KeyName::escape, .bytes = std::string(1, escape)});
}

void InputDecoder::emitKey(KeyEvent event, const Sink& sink) {
    const bool isSequence = state_ == State::csi || state_ == State::ss3 || state_ == State::console;
    event.bytes = (hasEscapeBefore_ ? "\x1b" : "") + sequence_;
    const bool isEscaped = event.bytes.size() > 1 && event.bytes.front() == escape && !isSequence;
    if (hasEscapeBefore_ || isEscaped) event.modifiers.alt = true;
    reset();
    sink(event);
}

/// The older forms do not tell which button goes up: it is the one that went down last.
void InputDecoder::emitMouse(MouseEvent event, const Sink& sink) {
    using Button = MouseEvent::Button;
    const bool isRelease = event.action == MouseEvent::Action::release;
    if (isRelease && event.button == Button::none) event.button = lastButton_;
    if (event.action == MouseEvent::Action::press && event.button <= Button::right) lastButton_ = event.button;
    emit(event, sink);
}

void InputDecoder::emitOther(const Sink& sink) {
    emit(KeyEvent{.name = KeyName::other, .bytes = sequence_}, sink);
}

void InputDecoder::emit(const InputEvent& event, const Sink& sink) {
    emitEscapeBefore(sink);
    reset();
    sink(event);
}

void InputDecoder::reset() {
    state_ = State::ground;
    sequence_.clear();
    hasEscapeBefore_ = false;
    isOverlong_ = false;
    flushes_ = 0;
}

}  // namespace orvane
