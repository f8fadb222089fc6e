#pragma once

#include <array>
#include <cstdint>
#include <optional>

#include "TerminalEmulator/Engine/Charset.h"

namespace orvane {

/// G0 to G3 and which of them text goes through. Codes from 0x80 on are UTF-8 and go through none, so what is shifted
/// into the right half (LS1R to LS3R) is held and has no effect.
struct CharsetState {
    std::array<Charset, 4> gCharsets{};
    std::uint8_t gLevel = 0;                  ///< in the left half, which text goes through
    std::uint8_t gRightLevel = 2;             ///< in the right half
    std::optional<std::uint8_t> singleShift;  ///< SS2, SS3: for the next character alone

    Charset current() const { return gCharsets[singleShift.value_or(gLevel)]; }
    bool isAscii() const { return !singleShift && gCharsets[gLevel] == Charset::ascii; }

    bool operator==(const CharsetState&) const = default;
};

}  // namespace orvane
