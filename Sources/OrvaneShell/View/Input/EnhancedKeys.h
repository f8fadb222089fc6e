#pragma once

#include <optional>
#include <string>

#include "OrvaneShell/View/Input/InputEvent.h"

/// Keys in the progressive enhancements of the keyboard, "CSI number : shifted : base ; modifiers : event ; text u".
namespace orvane::EnhancedKeys {

enum Flag : int {
    disambiguate = 1,
    eventTypes = 2,
    alternateKeys = 4,
    allKeys = 8,
    associatedText = 16,
};

/// Nothing for a key that keeps its legacy form with these flags; an empty text for one that is not told at all.
std::optional<std::string> encode(const KeyEvent& event, int flags);

}  // namespace orvane::EnhancedKeys
