#pragma once

#include <optional>
#include <string_view>

#include "OrvaneShell/View/Input/ControlSequence.h"
#include "OrvaneShell/View/Input/InputEvent.h"

/// What whole sequences of a terminal say. `bytes` are those of the sequence, for the event to keep.
namespace orvane::SequenceMeaning {

/// Keys in the forms of xterm, of rxvt and of terminals with progressive enhancements; nothing for what is no key.
std::optional<KeyEvent> key(const ControlSequence& sequence);
/// "SS3 letter", with modifiers before the letter where they are told.
std::optional<KeyEvent> ss3Key(std::string_view body);
/// The Linux console's "CSI [ letter".
std::optional<KeyEvent> consoleKey(char letter);

/// SGR and urxvt forms.
std::optional<MouseEvent> mouse(const ControlSequence& sequence);
/// The three bytes behind "CSI M", each at least 0x20. It does not tell which button went up.
std::optional<MouseEvent> x10Mouse(std::string_view body);

std::optional<FocusEvent> focus(const ControlSequence& sequence);

std::optional<ReplyEvent> reply(const ControlSequence& sequence, std::string_view bytes);
/// An OSC, DCS or the like with what begins and ends it.
ReplyEvent stringReply(std::string_view bytes);

}  // namespace orvane::SequenceMeaning
