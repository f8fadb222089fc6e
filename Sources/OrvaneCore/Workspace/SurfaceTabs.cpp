#include "OrvaneCore/Workspace/SurfaceTabs.h"

#include <algorithm>
#include <cmath>

#include "OrvaneCore/Support/Paths.h"
#include "OrvaneCore/Support/Text.h"

namespace orvane::SurfaceTabs {

namespace {

double evenWidth(int count, double available) {
    return (available - spacing * (count - 1.0)) / count;
}

}  // namespace

double width(int count, double available) {
    return count < 1 ? maxWidth : std::clamp(evenWidth(count, available), minWidth, maxWidth);
}

int visibleCount(int count, double available) {
    if (count < 1) return 0;
    if (evenWidth(count, available) >= minWidth) return count;
    const double fitting = std::floor((available + spacing) / (minWidth + spacing));
    // Held to its range before it becomes an integer: the room may be negative.
    return static_cast<int>(std::min(std::max(1.0, fitting), static_cast<double>(count)));
}

std::vector<SurfaceMeta> overflow(const std::vector<SurfaceMeta>& metas, double available) {
    return {metas.begin() + visibleCount(static_cast<int>(metas.size()), available), metas.end()};
}

std::string title(const std::string& given, const std::optional<std::string>& payload, const std::string& fallback) {
    if (const std::string_view own = Text::trimmed(given); !own.empty()) return std::string(own);
    if (payload && payload->contains('/')) return lastPathComponent(*payload);
    return fallback;
}

}  // namespace orvane::SurfaceTabs
