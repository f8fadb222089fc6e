#pragma once

#include <cmath>
#include <functional>
#include <numeric>
#include <set>

#include "OrvaneCore/Workspace/PaneLayout.h"
#include "OrvaneCore/Workspace/PaneMove.h"
#include "OrvaneCore/Workspace/PanePlacement.h"
#include "Support/PaneTrees.h"

namespace orvane::testing {

/// Picks a number from 0 up to, not including, the one given.
using Below = std::function<std::size_t(std::size_t)>;

/// The tree after an edit that is picked, as are the pane and the content, which may name nothing that is there.
inline PaneNode edited(const PaneNode& node, const Below& below) {
    const std::vector<Uuid> leaves = node.leafIDs();
    const Uuid pane = below(20) == 0 ? Uuid::random() : leaves[below(leaves.size())];
    const Uuid shown = content(static_cast<char>('a' + below(26)));
    const PaneAxis axis = below(2) == 0 ? PaneAxis::horizontal : PaneAxis::vertical;
    const auto anySize = [&] { return PaneSize{below(256) * 12.0, below(256) * 8.0}; };
    const auto dragDivider = [&] {
        std::vector<const PaneNode::Split*> splits;
        forEachSplit(node, [&](const PaneNode::Split& split, std::size_t) { splits.push_back(&split); });
        if (splits.empty()) return node.updatingFractions(Uuid::random(), {1});
        const PaneNode::Split& split = *splits[below(splits.size())];
        std::vector<double> shares(split.children.size());
        for (double& share : shares)
            share = std::pow(10, static_cast<double>(below(40)) - 30) * static_cast<double>(below(100) + 1);
        return node.updatingFractions(split.id, shares);
    };
    const std::function<PaneNode()> edits[] = {
        [&] { return node.splitting(pane, axis); },
        [&] { return node.splitting(leaves.front(), axis); },
        [&] { return node.splitting(leaves.back(), axis); },
        [&] { return node.inserting(shown, Uuid::random(), pane, axis, below(2) == 0); },
        [&] { return node.clearing(shown); },
        [&] { return node.assigningContent(shown, pane); },
        [&] { return PaneMove::moving(shown, pane, static_cast<PaneDropZone>(below(5)), node); },
        [&] { return PanePlacement::placing(shown, node, pane, anySize()).tree; },
        [&] { return below(30) == 0 ? PaneLayout::applying(PaneLayout::all[below(5)].build(), node).tree : node; },
        dragDivider,
        [&] { return node.removing(pane).value_or(PaneNode::single()); }};
    // Past sixty panes more are closed than opened.
    return edits[std::min<std::size_t>(below(leaves.size() > 60 ? 15 : 11), 10)]();
}

/// What does not hold of a tree that should; empty when all does.
inline std::string faults(const PaneNode& node) {
    std::string found;
    std::set<Uuid> ids = {Uuid()};
    for (const Uuid& id : node.leafIDs())
        if (!ids.insert(id).second) found += "A leaf id stands twice. ";
    forEachSplit(node, [&](const PaneNode::Split& split, std::size_t depth) {
        if (!ids.insert(split.id).second) found += "A split id stands twice. ";
        if (depth >= PaneNode::maximumDepth) found += "A split is too deep. ";
        if (split.children.size() < 2) found += "A split has no two children. ";
        if (!PaneFractions::fits(split.fractions, split.children.size())) found += "Shares do not fit. ";
        const double sum = std::accumulate(split.fractions.begin(), split.fractions.end(), 0.0);
        if (std::abs(sum - 1) > 1e-8) found += "Shares do not sum to 1. ";
    });
    return found;
}

}  // namespace orvane::testing
