#pragma once

#include "OrvaneShell/View/Painting/PanePainter.h"
#include "OrvaneShell/View/Painting/SidebarPainter.h"

namespace orvane {

/// Draws all of the view onto a canvas, and remembers in the context where everything stands now.
class ViewFrame {
 public:
    enum class Form {
        drawn,
        /// For plain lines: one pane at a time, as large as there is room, and nothing around it.
        plain,
    };
    explicit ViewFrame(Form form) : form_(form) {}

    /// More than the contents of panes has changed since the last frame. What a program writes changes them alone, and
    /// that is nearly every frame: all else takes longer to draw than they do.
    void noteChange() { isStale_ = true; }
    /// The canvas holds what the last frame left.
    void paint(ViewContext& view, Canvas& canvas);
    /// Whether a program is in the middle of a change that it wants to be seen at once; its pane keeps what it showed.
    bool isHeldBack() const { return panes_.isHeldBack(); }
    SidebarPainter& sidebar() { return sidebar_; }

 private:
    void place(ViewContext& view, const Canvas& canvas) const;
    void paintSurroundings(const ViewContext& view, Canvas& canvas);
    static void paintOnTop(const ViewContext& view, Canvas& canvas);

    Form form_;
    PanePainter panes_;
    SidebarPainter sidebar_;
    bool isStale_ = true;
};

}  // namespace orvane
