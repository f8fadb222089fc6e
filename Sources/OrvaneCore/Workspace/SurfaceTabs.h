#pragma once

#include <optional>
#include <string>
#include <vector>

#include "OrvaneCore/Workspace/SurfaceMeta.h"

/// The room that tabs take in their strip. All lengths are points.
namespace orvane::SurfaceTabs {

inline constexpr double minWidth = 96;
inline constexpr double maxWidth = 220;
/// Between two tabs.
inline constexpr double spacing = 2;

/// The width of each of `count` tabs.
double width(int count, double available);

/// How many tabs fit at their smallest width; at least one when there are any.
int visibleCount(int count, double available);

/// The surfaces behind the visible ones.
std::vector<SurfaceMeta> overflow(const std::vector<SurfaceMeta>& metas, double available);

/// The given title when it is not blank, else the name of the file that the payload is the path of, else the fallback.
std::string title(const std::string& given, const std::optional<std::string>& payload, const std::string& fallback);

}  // namespace orvane::SurfaceTabs
