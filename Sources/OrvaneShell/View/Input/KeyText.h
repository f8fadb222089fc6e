#pragma once

#include <expected>
#include <string>
#include <string_view>

#include "OrvaneShell/View/Input/InputEvent.h"

namespace orvane {

/// A key that the view has a use for. Capitals are their letter with Shift.
struct KeyPattern {
    KeyName name = KeyName::character;
    char32_t character = 0;
    KeyModifiers modifiers;

    /// Whether the event is this key going down or repeating, whatever form its terminal told it in: Shift-1 is '!',
    /// where that is known, the keypad's Enter is Enter, and with Control or Alt the place of the key counts on a
    /// keyboard of another script. Locks do not count.
    bool matches(const KeyEvent& event) const;

    bool operator==(const KeyPattern&) const = default;
};

/// Keys as people write them: "C-b", "M-x", "S-Left", "Enter", "F5", "?".
namespace KeyText {

/// Modifiers are C-, M-, S- and D- (Super), or in full Ctrl-, Alt-, Shift- and Super-, with '-' or '+', in any case and
/// order; a key is one character or a name. "C-B" is "C-b", which is how people write it; "C-S-b" takes Shift too. The
/// error is the part that is not understood, the whole text when the key is missing.
std::expected<KeyPattern, std::string> parse(std::string_view text);

/// As `parse` reads it back: "C-M-x", "S-Left", "Space", "A".
std::string write(const KeyPattern& pattern);

}  // namespace KeyText

}  // namespace orvane
