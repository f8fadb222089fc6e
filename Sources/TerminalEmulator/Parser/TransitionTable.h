#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>

#include "TerminalEmulator/Parser/ParserAction.h"
#include "TerminalEmulator/Parser/ParserState.h"

namespace orvane {

/// What to do with a byte in a state, and which state is next: one flat array of bytes, one load a look-up.
class TransitionTable {
 public:
    struct Transition {
        ParserAction action;
        ParserState nextState;
        bool operator==(const Transition&) const = default;
    };

    constexpr TransitionTable();

    [[nodiscard]] constexpr Transition at(ParserState state, std::uint8_t code) const {
        const std::uint8_t entry = entries_[indexOf(state, code)];
        return {.action = static_cast<ParserAction>(entry / 16), .nextState = static_cast<ParserState>(entry % 16)};
    }

 private:
    class Builder;

    /// All codes from here on behave alike: no control code lies above.
    static constexpr std::uint8_t lastColumn = 160;

    static constexpr std::size_t indexOf(ParserState state, std::uint8_t code) {
        return static_cast<std::size_t>(state) * 256 + std::min(code, lastColumn);
    }

    /// An entry is `action * 16 + nextState`. The last state needs no columns behind the last one in use.
    std::array<std::uint8_t, parserStateCount * 256 - 256 + lastColumn + 1> entries_{};
};

extern const TransitionTable transitionTable;

}  // namespace orvane
