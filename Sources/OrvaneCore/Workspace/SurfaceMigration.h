#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "OrvaneCore/Workspace/SavedSurface.h"

/// Between the oldest state files, which know one pane tree a project, and tab strips.
namespace orvane::SurfaceMigration {

/// One workspace a project, with its tree and, where the tree has it, its focused leaf.
std::map<Uuid, std::vector<SavedSurface>> migrate(const std::map<Uuid, PaneNode>& layouts,
                                                  const std::map<Uuid, Uuid>& focused, const std::string& defaultTitle);

/// The leaf of the second tree that stands where the focused one stands in the first.
std::optional<Uuid> focusedPane(const std::optional<Uuid>& leaf, const PaneNode& movedFrom, const PaneNode& to);

/// The tree of each project's active surface, else the first one that it has.
std::map<Uuid, PaneNode> legacyLayouts(const std::map<Uuid, std::vector<SavedSurface>>& from,
                                       const std::map<Uuid, Uuid>& active);

}  // namespace orvane::SurfaceMigration
