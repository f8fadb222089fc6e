#include "OrvaneCore/Workspace/ProjectPalette.h"

namespace orvane::ProjectPalette {

const ProjectColor& color(std::int64_t index) {
    constexpr auto count = static_cast<std::int64_t>(colors.size());
    return colors[static_cast<std::size_t>((index % count + count) % count)];
}

std::optional<std::string> colorHex(std::string_view text) {
    if (text.starts_with('#')) text.remove_prefix(1);
    if (text.size() != 6) return std::nullopt;
    std::string hex;
    for (const char digit : text) {
        const char upper = digit >= 'a' && digit <= 'f' ? static_cast<char>(digit - 'a' + 'A') : digit;
        if (!std::string_view("0123456789ABCDEF").contains(upper)) return std::nullopt;
        hex += upper;
    }
    return hex;
}

}  // namespace orvane::ProjectPalette
