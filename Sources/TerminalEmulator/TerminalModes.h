#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace orvane {

/// Which events of the mouse a program wants (DECSET 9, 1000, 1002, 1003).
enum class MouseMode : std::uint8_t { off, x10, vt200, buttonEventTracking, anyEvent };

/// How they are encoded (DECSET 1005, 1006, 1015, 1016).
enum class MouseProtocol : std::uint8_t { x10, utf8, sgr, urxvt, sgrPixel };

/// The progressive enhancements of the keyboard that a program has asked for, for one screen.
struct KeyboardModeState {
    /// A program that pushes without end loses its oldest.
    static constexpr std::size_t maximumStack = 32;

    int flags = 0;
    std::vector<int> stack;

    bool operator==(const KeyboardModeState&) const = default;
};

/// What programs switch on and off. Wraparound and the like are here, margins and saved cursors with their `Buffer`.
struct TerminalModes {
    bool applicationCursor = false;          ///< DECCKM
    bool applicationKeypad = false;          ///< DECKPAM, 66
    bool reverseVideo = false;               ///< DECSCNM
    bool smoothScroll = false;               ///< DECSCLM
    bool originMode = false;                 ///< DECOM
    bool marginMode = false;                 ///< DECLRMM
    bool insertMode = false;                 ///< IRM
    bool lineFeedMode = false;               ///< LNM
    bool wraparound = true;                  ///< DECAWM
    bool reverseWraparound = false;          ///< 45
    bool extendedReverseWraparound = false;  ///< 1045: also over rows that were not wrapped
    bool cursorBlink = false;                ///< 12
    bool cursorHidden = false;               ///< DECTCEM reset
    bool allow80To132 = false;               ///< 40
    bool keepsScreenOnColumnMode = false;    ///< DECNCSM
    bool is132Columns = false;               ///< DECCOLM
    bool bracketedPasteMode = false;         ///< 2004
    bool sendFocus = false;                  ///< 1004
    bool synchronizedOutputActive = false;   ///< 2026
    MouseMode mouseMode = MouseMode::off;
    MouseProtocol mouseProtocol = MouseProtocol::x10;

    bool operator==(const TerminalModes&) const = default;
};

enum class TerminalConformance : std::uint8_t { vt100 = 1, vt200, vt300, vt400, vt500 };

}  // namespace orvane
