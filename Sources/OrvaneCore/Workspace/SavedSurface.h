#pragma once

#include <optional>
#include <string>

#include "OrvaneCore/Workspace/PaneNode.h"
#include "OrvaneCore/Workspace/SurfaceMeta.h"

namespace orvane {

/// A tab as the state file keeps it.
struct SavedSurface {
    SurfaceMeta meta;
    /// The pane tree, of the kinds that own one.
    std::optional<PaneNode> node;
    /// A leaf of the tree.
    std::optional<Uuid> focusedPane;

    bool operator==(const SavedSurface&) const = default;

    /// A new workspace of one empty pane.
    static SavedSurface workspace(const std::string& title);

    JsonValue encode() const;
    /// None when the surface cannot be read; a tree that cannot be read is left out.
    static std::optional<SavedSurface> decode(const JsonValue& json);
};

}  // namespace orvane
