#include "OrvaneCore/Workspace/PanePlacement.h"

#include "OrvaneCore/Workspace/PaneMetrics.h"

namespace orvane {

namespace {

const PaneNode::Leaf& firstLeaf(const PaneNode& tree) {
    const PaneNode* node = &tree;
    while (const auto* split = std::get_if<PaneNode::Split>(&node->value))
        node = &split->children.front();
    return std::get<PaneNode::Leaf>(node->value);
}

}  // namespace

PanePlacement PanePlacement::placing(const Uuid& content, const PaneNode& tree, const std::optional<Uuid>& focusedLeaf,
                                     const PaneSize& area, const Uuid& newLeaf) {
    if (const auto empty = tree.firstEmptyLeafID()) {
        return {.tree = tree.assigningContent(content, *empty), .leaf = *empty};
    }
    const Uuid chosen = focusedLeaf && tree.contains(*focusedLeaf) ? *focusedLeaf : firstLeaf(tree).id;
    const PaneSize size = tree.size(chosen, area).value_or(PaneSize());
    const PaneAxis axis = PaneMetrics::splitAxis(size).value_or(PaneAxis::horizontal);
    return {.tree = tree.inserting(content, newLeaf, chosen, axis, false), .leaf = newLeaf};
}

PanePlacement PanePlacement::placingInLeaf(const Uuid& leaf, const Uuid& content, const PaneNode& tree,
                                           const std::optional<Uuid>& focusedLeaf, const PaneSize& area,
                                           const Uuid& newLeaf) {
    if (!tree.contains(leaf)) return placing(content, tree, focusedLeaf, area, newLeaf);
    return {.tree = tree.assigningContent(content, leaf), .leaf = leaf};
}

}  // namespace orvane
