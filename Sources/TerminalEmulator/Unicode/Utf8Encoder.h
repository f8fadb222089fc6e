#pragma once

#include <string>

namespace orvane {

/// Appends a scalar in UTF-8.
inline void appendUtf8(char32_t scalar, std::string& out) {
    const auto trail = [&](int shift) { out += static_cast<char>(0x80 | ((scalar >> shift) & 0x3F)); };
    if (scalar < 0x80) {
        out += static_cast<char>(scalar);
    } else if (scalar < 0x800) {
        out += static_cast<char>(0xC0 | (scalar >> 6));
        trail(0);
    } else if (scalar < 0x10000) {
        out += static_cast<char>(0xE0 | (scalar >> 12));
        trail(6);
        trail(0);
    } else {
        out += static_cast<char>(0xF0 | (scalar >> 18));
        trail(12);
        trail(6);
        trail(0);
    }
}

}  // namespace orvane
