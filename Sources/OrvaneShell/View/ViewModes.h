#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace orvane {

enum class MouseReports : std::uint8_t { none, wanted };

/// What a terminal is told before the view is drawn on it: the alternate screen, cleared, with no cursor; no autowrap,
/// reports of focus, paste, mouse and colour scheme; and the questions what it can do. It answers OSC 11 if it tells
/// its background, CSI ? flags u if it has the keyboard protocol of kitty, CSI ? 2026 ; n $ y if it knows synchronized
/// output, and at last, in any case, with its device attributes, CSI ? … c.
std::string viewEnterText(MouseReports mouse);

/// For a view in plain lines, which asks nothing and sets only what keeps a pasted text together; and its end.
std::string_view plainEnterText();
std::string_view plainLeaveText();

/// Keeps the title of the window, once before the first one of the view; the leave text brings it back.
std::string_view viewKeepTitleText();

/// What a terminal is told at the end, in whatever state the view has left it, be it in the middle of a sequence. Does
/// no harm to one that is in none of these modes but that its screen is cleared.
std::string_view viewLeaveText();

/// For a terminal with the keyboard protocol of kitty: keys that the old form confuses come in the new one. The leave
/// text takes it back.
std::string_view viewKeyboardText();

/// Whether the mouse is reported also while no button is held.
std::string_view viewMotionText(bool isWanted);

std::string viewTitleText(std::string_view title);

/// Puts a text into the clipboard (OSC 52). Terminals ask their user, or do not know it, as they like.
std::string viewClipboardText(std::string_view content);

/// Calls the user: a bell, and a notification (OSC 9) where the terminal has them. One line without control characters.
std::string viewNotificationText(std::string_view line);

}  // namespace orvane
