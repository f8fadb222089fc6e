#pragma once

#include "OrvaneCore/Workspace/PaneDropZone.h"
#include "OrvaneCore/Workspace/PaneNode.h"

namespace orvane::PaneMove {

/// Drops a content onto a leaf. In the center it replaces what the leaf shows; at an edge it stands beside the leaf.
/// The pane that showed it before, the first when there are several, is gone then; at an edge it keeps its id. A
/// content that no pane showed, such as a session dragged from the sidebar, gets a pane with the id `newLeaf`.
///
/// The tree comes back as it was when it lacks the leaf or the leaf shows that content already.
PaneNode moving(const Uuid& content, const Uuid& toLeaf, PaneDropZone zone, const PaneNode& tree,
                const Uuid& newLeaf = Uuid::random());

}  // namespace orvane::PaneMove
