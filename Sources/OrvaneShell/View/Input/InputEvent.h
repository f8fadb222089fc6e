#pragma once

#include <cstdint>
#include <string>
#include <variant>
#include <vector>

namespace orvane {

/// Which key. The ranges f1 to f35 and keypad0 to keypadBegin are consecutive, in the order of the numbers that the
/// progressive enhancements of the keyboard ("CSI number ; modifiers u") give them.
enum class KeyName : std::uint8_t {
    character,
    enter,
    tab,
    backspace,
    escape,
    up,
    down,
    left,
    right,
    home,
    end,
    pageUp,
    pageDown,
    insert,
    delete_,
    // clang-format off
    f1, f2, f3, f4, f5, f6, f7, f8, f9, f10, f11, f12, f13, f14, f15, f16, f17, f18,
    f19, f20, f21, f22, f23, f24, f25, f26, f27, f28, f29, f30, f31, f32, f33, f34, f35,
    keypad0, keypad1, keypad2, keypad3, keypad4, keypad5, keypad6, keypad7, keypad8, keypad9,
    keypadDecimal, keypadDivide, keypadMultiply, keypadSubtract, keypadAdd, keypadEnter, keypadEqual, keypadSeparator,
    keypadLeft, keypadRight, keypadUp, keypadDown, keypadPageUp, keypadPageDown, keypadHome, keypadEnd, keypadInsert,
    keypadDelete, keypadBegin,
    // clang-format on
    functional,  ///< a lock, media, menu or modifier key, which only enhanced keyboards tell; `character` is its number
    other,       ///< a sequence that nobody knows: it is for nobody
};

struct KeyModifiers {
    bool shift = false;
    bool alt = false;
    bool control = false;
    bool super = false;
    bool hyper = false;
    bool meta = false;
    bool capsLock = false;
    bool numLock = false;

    /// Locks do not count: they are on for hours and mean nothing to a key.
    bool isNone() const { return withoutLocks() == KeyModifiers(); }
    KeyModifiers withoutLocks() const {
        return {.shift = shift, .alt = alt, .control = control, .super = super, .hyper = hyper, .meta = meta};
    }
    bool operator==(const KeyModifiers&) const = default;
};

struct KeyEvent {
    enum class Action : std::uint8_t { press, repeat, release };

    KeyName name = KeyName::character;
    /// Of `character`: without what Control and Alt make of it, "Ctrl-C" is 'c'. A terminal without enhancements tells
    /// Shift-A as 'A' without shift, one with them as 'a' with shift; `typedCharacter` and `KeyPattern` know both.
    char32_t character = 0;
    KeyModifiers modifiers;
    Action action = Action::press;
    std::string bytes;              ///< as they came from the outer terminal; empty for a key made up here
    char32_t shiftedCharacter = 0;  ///< what Shift makes of the key, where the terminal told it
    char32_t baseCharacter = 0;     ///< of the same key on a US keyboard, where the terminal told it
    std::string text;               ///< what the key types, where the terminal told it

    bool operator==(const KeyEvent&) const = default;
};

struct MouseEvent {
    enum class Action : std::uint8_t { press, release, motion };
    enum class Button : std::uint8_t { left, middle, right, wheelUp, wheelDown, wheelLeft, wheelRight, none };

    Button button = Button::none;  ///< of a motion: the one that is held down
    Action action = Action::press;
    KeyModifiers modifiers;
    int x = 0;  ///< column from 0
    int y = 0;

    bool operator==(const MouseEvent&) const = default;
};

/// A piece of a bracketed paste, which may be of any length. Its text is UTF-8 (malformed bytes are U+FFFD already),
/// and no cut lies within a character or between CR and LF.
struct PasteEvent {
    std::string text;
    bool isLast = false;
    bool isFirst = false;

    bool operator==(const PasteEvent&) const = default;
};

struct FocusEvent {
    bool hasFocus = false;

    bool operator==(const FocusEvent&) const = default;
};

/// The terminal answers a question of the view.
struct ReplyEvent {
    enum class Kind : std::uint8_t {
        primaryAttributes,  ///< DA1; the parameters are the attributes
        modeReport,         ///< DECRPM of a private mode; its number and its state
        keyboardFlags,      ///< the enhancements of the keyboard that are on
        backgroundColor,    ///< red, green and blue, 0 to 255
        colorScheme,        ///< it changed; 1 is dark, 2 is light
        cursorPosition,     ///< row and column from 1
        other,
    };

    Kind kind = Kind::other;
    std::vector<int> parameters;
    std::string text;  ///< the sequence as it came

    bool operator==(const ReplyEvent&) const = default;
};

using InputEvent = std::variant<KeyEvent, MouseEvent, PasteEvent, FocusEvent, ReplyEvent>;

}  // namespace orvane
