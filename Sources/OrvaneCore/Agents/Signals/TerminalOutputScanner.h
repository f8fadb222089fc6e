#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace orvane {

/// Tells bytes that draw something from those that only move the cursor or set a title. A sequence may be cut anywhere
/// between two calls.
struct TerminalOutputScanner {
    enum class State : std::uint8_t { normal, escape, csi, string, stringEscape };

    struct Result {
        bool printable = false;
        bool bell = false;  ///< one that rings; those that end a title do not count
        bool operator==(const Result&) const = default;
    };

    State state = State::normal;

    Result scan(std::string_view bytes);

    /// The bytes alone that draw something: without escape sequences and control characters.
    static std::string textOf(std::string_view bytes);
};

}  // namespace orvane
