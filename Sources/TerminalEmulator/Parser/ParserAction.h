#pragma once

#include <cstdint>

namespace orvane {

/// What the parser does with a byte before it enters the next state. The values are the upper halves of the entries of
/// `TransitionTable`.
enum class ParserAction : std::uint8_t {
    ignore,
    error,
    print,
    execute,
    /// Of an APC string too, which has no actions of its own.
    oscStart,
    oscPut,
    oscEnd,
    csiDispatch,
    param,
    collect,
    escDispatch,
    clear,
    dcsHook,
    dcsPut,
    dcsUnhook,
};

}  // namespace orvane
