#include "OrvaneCore/Workspace/PaneMove.h"

#include <utility>

namespace orvane::PaneMove {

PaneNode moving(const Uuid& content, const Uuid& toLeaf, PaneDropZone zone, const PaneNode& tree, const Uuid& newLeaf) {
    if (!tree.contains(toLeaf) || tree.contentID(toLeaf) == content) return tree;
    const std::optional<Uuid> source = tree.leafID(content);
    // The target is another leaf than the source, so something is always left.
    PaneNode rest = source ? tree.removing(*source).value_or(tree) : tree;
    const std::optional<PaneAxis> splitAxis = axis(zone);
    if (!splitAxis) return rest.assigningContent(content, toLeaf);
    return rest.inserting(content, source.value_or(newLeaf), toLeaf, *splitAxis, insertsBefore(zone));
}

}  // namespace orvane::PaneMove
