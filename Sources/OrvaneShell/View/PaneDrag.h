#pragma once

#include <optional>
#include <variant>

#include "OrvaneCore/Workspace/PaneDropZone.h"
#include "OrvaneShell/View/CellRect.h"
#include "OrvaneShell/View/ViewLayout.h"

namespace orvane {

class ViewContext;

/// A pane that is dragged by its title, and what would become of it if it were dropped now.
struct PaneDrag {
    /// Onto or beside another pane of the tab.
    struct OnPane {
        Uuid leaf;
        PaneDropZone zone = PaneDropZone::center;
        bool operator==(const OnPane&) const = default;
    };
    /// Into another tab.
    struct OnTab {
        Uuid surface;
        bool operator==(const OnTab&) const = default;
    };
    /// Into a tab of its own.
    struct OnStrip {
        bool operator==(const OnStrip&) const = default;
    };
    using Target = std::variant<std::monostate, OnPane, OnTab, OnStrip>;

    Uuid leaf;     ///< of the pane that is dragged
    Uuid content;  ///< what it shows
    Target target;
    CellRect preview;  ///< the cells that it would take; empty when it would go nowhere

    bool operator==(const PaneDrag&) const = default;

    /// Goes on to a cell.
    void moveTo(const ViewContext& view, int x, int y);
    void drop(ViewContext& view) const;
};

}  // namespace orvane
