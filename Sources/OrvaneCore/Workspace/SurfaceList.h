#pragma once

#include <optional>
#include <string>
#include <vector>

#include "OrvaneCore/Workspace/SurfaceMeta.h"

namespace orvane {

/// A tab strip and which of its tabs is shown.
struct SurfaceSelection {
    std::vector<SurfaceMeta> metas;
    std::optional<Uuid> active;

    bool operator==(const SurfaceSelection&) const = default;
};

/// Edits of a tab strip. Each gives a new strip; an unknown id changes nothing.
namespace SurfaceList {

/// When the closed surface was the active one, the one that takes its place becomes active, or the new last one.
SurfaceSelection closing(const Uuid& id, std::vector<SurfaceMeta> from, const std::optional<Uuid>& active);

/// Moves a surface directly in front of another, or to the end without one.
std::vector<SurfaceMeta> moving(const Uuid& id, const std::optional<Uuid>& before, std::vector<SurfaceMeta> in);

/// Adds a surface and makes it active. A preview takes the place of the first preview there is.
SurfaceSelection replacingPreview(SurfaceMeta meta, std::vector<SurfaceMeta> in);

/// Whether an opened file stays until it is closed.
enum class Pin { no, yes };

/// Activates the tab of a file, or opens one; without a pin as a preview.
SurfaceSelection opening(const std::string& file, const std::string& title, std::vector<SurfaceMeta> in, Pin pin);

/// The surface at a place counted from 1.
std::optional<Uuid> at(int index, const std::vector<SurfaceMeta>& in);

/// The surface `offset` places from the given one, round the ends.
std::optional<Uuid> neighbour(const Uuid& of, const std::vector<SurfaceMeta>& in, int offset);

}  // namespace SurfaceList

}  // namespace orvane
