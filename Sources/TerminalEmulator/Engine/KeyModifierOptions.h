#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace orvane {

/// How far keys tell their modifiers (XTMODKEYS), one option a kind of key.
struct KeyModifierOptions {
    static constexpr std::size_t count = 5;
    static constexpr std::int32_t disabled = -1;
    static constexpr std::int32_t greatest = 4;

    /// Keyboard, cursor keys, function keys, (none) and other keys; at first as xterm has them.
    static constexpr std::array<std::int32_t, count> initial{0, 2, 2, 0, 0};

    std::array<std::int32_t, count> values = initial;

    bool operator==(const KeyModifierOptions&) const = default;
};

}  // namespace orvane
