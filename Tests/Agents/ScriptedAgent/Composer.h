#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "ScriptedAgent/Scenario.h"

namespace orvane::scripted {

/// What a person types before it is entered.
class Composer {
 public:
    void type(std::string_view text);
    /// Shown as the rule says when it is long enough for that.
    void paste(const std::string& text, const PasteRule& rule);
    void erase();
    /// Back to the beginning of the line; at the beginning, onto the line before.
    void eraseLine();
    void clear() { pieces_.clear(); }

    bool empty() const { return pieces_.empty(); }
    bool endsWith(std::string_view text) const { return !empty() && pieces_.back().text == text; }
    std::string shown() const;
    /// With all that was pasted.
    std::string text() const;

 private:
    struct Piece {
        std::string shown;
        std::string text;
    };
    std::vector<Piece> pieces_;
    int pastes_ = 0;
};

}  // namespace orvane::scripted
