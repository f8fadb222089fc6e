#pragma once

#include <optional>

#include "OrvaneCore/Workspace/PaneNode.h"

namespace orvane {

/// A content put into a pane of a workspace.
struct PanePlacement {
    PaneNode tree;
    /// The leaf that has the content and should take the focus.
    Uuid leaf;

    bool operator==(const PanePlacement&) const = default;

    /// Puts the content into the first empty leaf. When there is none, the focused leaf, or else the first, is split
    /// where its halves stay comfortable, into columns when neither axis allows that, and the content goes into the
    /// new half, `newLeaf`, whose id must be fresh. `area` is what the whole tree fills.
    static PanePlacement placing(const Uuid& content, const PaneNode& tree, const std::optional<Uuid>& focusedLeaf,
                                 const PaneSize& area, const Uuid& newLeaf = Uuid::random());

    /// Puts the content into the given leaf, whatever that shows; an id that the tree does not have leaves the choice
    /// to `placing`.
    static PanePlacement placingInLeaf(const Uuid& leaf, const Uuid& content, const PaneNode& tree,
                                       const std::optional<Uuid>& focusedLeaf, const PaneSize& area,
                                       const Uuid& newLeaf = Uuid::random());
};

}  // namespace orvane
