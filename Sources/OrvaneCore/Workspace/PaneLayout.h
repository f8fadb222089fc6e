#pragma once

#include <array>
#include <string_view>
#include <vector>

#include "OrvaneCore/Workspace/PaneNode.h"

namespace orvane {

/// A layout of the menu.
struct PaneLayout {
    std::string_view name;
    std::string_view textKey;
    /// Builds the layout with fresh ids and empty leaves.
    PaneNode (*build)();

    /// In menu order.
    static const std::array<PaneLayout, 5> all;

    /// The layout of that name; null when there is none.
    static const PaneLayout* named(std::string_view name);

    /// A workspace tree after a layout was applied to it.
    struct Applied {
        PaneNode tree;
        /// Contents that found no leaf, in their former order. Nothing about them ends: sessions go on and surfaces
        /// return to the tab strip.
        std::vector<Uuid> unplaced;
    };

    /// The shape of `layout` with fresh ids, holding the contents of `tree` in leaf order. A content that several
    /// panes showed is placed once. Leaves beyond the contents are empty.
    static Applied applying(const PaneNode& layout, const PaneNode& tree);
};

}  // namespace orvane
