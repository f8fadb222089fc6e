#include "OrvaneShell/View/Painting/ViewLook.h"

#include <charconv>

namespace orvane::ViewLook {

Attribute ofHex(std::string_view hex, Style style) {
    std::uint32_t rgb = 0;
    std::from_chars(hex.data(), hex.data() + hex.size(), rgb, 16);
    const auto part = [rgb](int shift) { return static_cast<std::uint8_t>(rgb >> shift); };
    return {.fg = Attribute::Color::trueColor(part(16), part(8), part(0)), .style = style};
}

}  // namespace orvane::ViewLook
