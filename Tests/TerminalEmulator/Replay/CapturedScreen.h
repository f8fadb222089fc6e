#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "TerminalEmulator/Buffer/Attribute.h"

namespace orvane {

/// One cell as a person sees it. The right half of a wide character has no text.
struct ShownCell {
    std::string text;
    Attribute::Color foreground;
    Attribute::Color background;
    Attribute::CharacterStyle style = Attribute::CharacterStyle::none;

    bool operator==(const ShownCell&) const = default;
};

/// For the message of a test: 'x' and what is not the default about it.
std::string described(const ShownCell& cell);

/// A screen as tmux captured it; Tests/Recordings/README.md describes the text.
struct CapturedScreen {
    /// A row ends where the last character was written; what lies behind it was erased, with which colour is not told.
    std::vector<std::vector<ShownCell>> rows;
    int cursorX = 0;
    int cursorY = 0;
    bool isAlternate = false;

    /// Throws `std::invalid_argument` for what tmux does not write, so that nothing goes unread.
    static CapturedScreen parse(std::string_view text);
};

}  // namespace orvane
