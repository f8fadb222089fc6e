#pragma once

#include <cstddef>
#include <cstdint>

namespace orvane {

/// The states of the DEC state diagram for ANSI-compatible parsers, with one of its own for APC strings. The values are
/// the rows of `TransitionTable`.
enum class ParserState : std::uint8_t {
    ground,
    escape,
    escapeIntermediate,
    csiEntry,
    csiParam,
    csiIntermediate,
    csiIgnore,
    /// Inside a SOS or PM string; the name is the diagram's, where APC strings share it.
    sosPmApcString,
    oscString,
    apcString,
    dcsEntry,
    dcsParam,
    dcsIgnore,
    dcsIntermediate,
    dcsPassthrough,
};

inline constexpr std::size_t parserStateCount = 15;

}  // namespace orvane
