#pragma once

#include <string_view>

namespace orvane {

/// What a terminal is told before the view is drawn on it: the alternate screen, cleared, with no cursor; no autowrap,
/// reports of focus, paste and mouse; and the questions what it can do. It answers CSI ? flags u if it has the keyboard
/// protocol of kitty, CSI ? 2026 ; n $ y if it knows synchronized output, and at last, in any case, with its device
/// attributes, CSI ? … c.
std::string_view viewEnterText();

/// What a terminal is told at the end, in whatever state the view has left it, be it in the middle of a sequence. Does
/// no harm to one that is in none of these modes but that its screen is cleared.
std::string_view viewLeaveText();

}  // namespace orvane
