#pragma once

#include <cstddef>
#include <expected>
#include <string>
#include <string_view>
#include <vector>

#include "OrvaneShell/View/Input/KeyText.h"

namespace orvane {

/// Keys that are typed one after the other, perhaps behind the leader, whichever that is: "Leader %", "M-Left",
/// "C-p n".
struct KeySequence {
    bool beginsWithLeader = false;
    std::vector<KeyPattern> keys;

    /// With the leader. People have to remember them.
    static constexpr std::size_t longest = 4;

    /// The keys of `KeyText` with blanks between them. The error is the part that is not understood, or the whole text
    /// when there are no keys in it or too many.
    static std::expected<KeySequence, std::string> parse(std::string_view text);
    /// As `parse` reads it back.
    std::string text() const;
    /// With the leader's own name: "C-b %".
    std::string shown(const KeyPattern& leader) const;

    bool isEmpty() const { return !beginsWithLeader && keys.empty(); }
    /// Whether the other one is this one, or this one and more.
    bool isStartOf(const KeySequence& other) const;
    /// Without its last key.
    KeySequence beginning() const;

    bool operator==(const KeySequence&) const = default;
};

}  // namespace orvane
