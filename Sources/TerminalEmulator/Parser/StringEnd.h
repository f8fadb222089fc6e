#pragma once

#include <cstdint>

namespace orvane {

/// How an OSC or APC string ended. xterm ends the answer to a query as the query was ended.
enum class StringEnd : std::uint8_t {
    /// ESC, which begins a string terminator, or an 8-bit string terminator.
    stringTerminator,
    bell,
};

}  // namespace orvane
