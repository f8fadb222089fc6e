#pragma once

#include <bitset>
#include <cstddef>
#include <map>
#include <optional>

#include "TerminalEmulator/Engine/KeyModifierOptions.h"

namespace orvane {

/// Modes without an effect here, which a program may set and ask for all the same.
class HeldModes {
 public:
    static constexpr std::size_t maximumModes = 128;  ///< room for those of both kinds together

    HeldModes();

    /// Whether it is one of these; those that cannot change stay as they are.
    bool setPrivate(int mode, bool isOn);
    bool setAnsi(int mode, bool isOn);

    /// What DECRQM answers of it: 1 set, 2 reset, 3 always set, 4 always reset; nothing for a mode that is not here.
    std::optional<int> privateState(int mode) const;
    std::optional<int> ansiState(int mode) const;

    /// What XTSAVE keeps of private modes with and without an effect; whoever saves knows the mode, which bounds it.
    std::map<int, bool> savedPrivateModes;
    KeyModifierOptions keyModifiers;

    bool operator==(const HeldModes&) const = default;

 private:
    std::bitset<maximumModes> isOn_;
};

}  // namespace orvane
