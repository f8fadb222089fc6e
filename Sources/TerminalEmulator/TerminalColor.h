#pragma once

#include <cstdint>

namespace orvane {

/// A colour as programs set and ask for it: 16 bits a channel, as X11 has them.
struct TerminalColor {
    std::uint16_t red = 0;
    std::uint16_t green = 0;
    std::uint16_t blue = 0;

    static constexpr TerminalColor fromBytes(std::uint8_t red, std::uint8_t green, std::uint8_t blue) {
        return {static_cast<std::uint16_t>(red * 257), static_cast<std::uint16_t>(green * 257),
                static_cast<std::uint16_t>(blue * 257)};
    }

    bool operator==(const TerminalColor&) const = default;
};

}  // namespace orvane
