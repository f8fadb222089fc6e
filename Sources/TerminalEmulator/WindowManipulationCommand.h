#pragma once

#include <cstdint>
#include <variant>

namespace orvane {

/// What a program asks of the window that shows it (XTWINOPS, `CSI … t`). Places and widths are in pixels, columns,
/// rows and lines in cells. As xterm has it, -1 leaves a measure as it is and 0 asks for all that the screen has.
struct WindowManipulationCommand {
    struct MoveWindowTo {
        int x = 0;
        int y = 0;
        bool operator==(const MoveWindowTo&) const = default;
    };
    struct ResizeWindowTo {
        int width = 0;
        int height = 0;
        bool operator==(const ResizeWindowTo&) const = default;
    };
    /// The size of the whole window in cells.
    struct ResizeTo {
        int cols = 0;
        int rows = 0;
        bool operator==(const ResizeTo&) const = default;
    };
    /// The size of the text area in cells; DECCOLM and `CSI 8 ; rows ; cols t` ask for it.
    struct ResizeTerminal {
        int cols = 0;
        int rows = 0;
        bool operator==(const ResizeTerminal&) const = default;
    };
    /// DECSLPP.
    struct ResizeToLines {
        int lines = 0;
        bool operator==(const ResizeToLines&) const = default;
    };
    enum class Action : std::uint8_t {
        deiconifyWindow,
        iconifyWindow,
        bringToFront,
        sendToBack,
        refreshWindow,
        restoreMaximizedWindow,
        maximizeWindow,
        maximizeWindowVertically,
        maximizeWindowHorizontally,
        undoFullScreen,
        switchToFullScreen,
        toggleFullScreen,
    };
    enum class Report : std::uint8_t {
        terminalState,
        terminalPosition,
        textAreaPosition,
        textAreaPixelDimension,
        terminalWindowPixelDimension,
        sizeOfScreenInPixels,
        cellSizeInPixels,
        textAreaCharacters,
        screenSizeCharacters,
        iconLabel,
        windowTitle,
    };

    std::variant<MoveWindowTo, ResizeWindowTo, ResizeTo, ResizeTerminal, ResizeToLines, Action, Report> value;

    bool operator==(const WindowManipulationCommand&) const = default;
};

}  // namespace orvane
