#pragma once

#include <vector>

#include "OrvaneShell/View/Canvas.h"
#include "OrvaneShell/View/SidebarRows.h"
#include "OrvaneShell/View/ViewContext.h"

namespace orvane {

/// Draws the side rail: projects with their branch, sessions with mark, title and the age of their last change.
class SidebarPainter {
 public:
    void paint(const ViewContext& view, Canvas& canvas);
    /// What stands in a row of the terminal; null where nothing does.
    const SidebarRow* rowAt(const ViewContext& view, int x, int y) const;
    void scroll(int rows) { first_ += rows; }

 private:
    void paintProject(const ViewContext& view, CanvasPen& pen, int y, const SidebarRow& row) const;
    static void paintComingBack(const ViewContext& view, CanvasPen& pen, int y, const std::string& title);
    void paintSession(const ViewContext& view, CanvasPen& pen, int y, const SessionController& session) const;
    void keepSelectionInSight(const ViewContext& view, int room);

    std::vector<SidebarRow> rows_;
    int first_ = 0;  ///< of `rows_`, in the topmost row
    std::optional<Uuid> lastSelected_;
};

}  // namespace orvane
