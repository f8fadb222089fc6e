#pragma once

#include "OrvaneShell/View/ViewLayout.h"
#include "OrvaneShell/View/ViewOverlay.h"

namespace orvane {

/// The arrows move the edges of the focused pane until another key ends it.
class ResizeMode final : public ViewOverlay {
 public:
    /// Moves the edge of a pane one step: that behind it, or where it has none the one before it.
    static void pullEdge(ViewContext& view, const Uuid& leaf, ViewLayout::Direction direction);
    /// One step on both axes, at the cost of its neighbours or for them.
    enum class Growth { larger, smaller };
    static void grow(ViewContext& view, const Uuid& leaf, Growth growth);

    void paint(const ViewContext& /*view*/, Canvas& /*canvas*/) override {}
    Next key(ViewContext& view, const KeyEvent& key) override;
    std::string hint(const ViewContext& view) const override;
};

/// The arrows move the focused pane beside its neighbour in that direction, until another key ends it.
class MoveMode final : public ViewOverlay {
 public:
    void paint(const ViewContext& /*view*/, Canvas& /*canvas*/) override {}
    Next key(ViewContext& view, const KeyEvent& key) override;
    std::string hint(const ViewContext& view) const override;
};

}  // namespace orvane
