#pragma once

#include <optional>
#include <string>

#include "OrvaneShell/View/Input/InputEvent.h"
#include "OrvaneShell/View/Painting/SidebarPainter.h"
#include "OrvaneShell/View/ViewContext.h"

namespace orvane {

/// What the mouse does: chooses sessions, tabs and panes, moves dividers, selects text and scrolls; a program that
/// wants the mouse gets it, unless Shift is held.
class ViewMouse {
 public:
    void take(ViewContext& view, SidebarPainter& sidebar, const MouseEvent& event);
    /// Lets go of a pane that is being dragged; whether there was one.
    bool cancelDrag(ViewContext& view);
    /// Whether the program in the focused pane wants to know of every motion.
    static bool wantsMotion(const ViewContext& view);

 private:
    /// What a button that is held down acts on.
    struct ProgramGrab {
        Uuid leaf;
    };
    struct SelectionGrab {
        Uuid leaf;
    };
    struct DividerGrab {
        Uuid split;
        std::size_t index = 0;
        PaneAxis axis = PaneAxis::horizontal;
        int at = 0;  ///< where on its axis the divider was last
    };
    struct TabGrab {
        Uuid surface;
    };
    /// A title that may be dragged; from the first motion on the drag is `ViewContext::drag`.
    struct TitleGrab {
        Uuid leaf;
    };
    struct LinkGrab {
        Uuid leaf;
        std::string address;
    };
    using Grab = std::variant<std::monostate, ProgramGrab, SelectionGrab, DividerGrab, TabGrab, TitleGrab, LinkGrab>;

    void press(ViewContext& view, SidebarPainter& sidebar, const MouseEvent& event);
    void pressInPane(ViewContext& view, const ViewLayout::Pane& pane, const MouseEvent& event);
    void pressInSidebar(ViewContext& view, const SidebarRow& row, const MouseEvent& event);
    static bool pressOnOverlay(ViewContext& view, const MouseEvent& event);
    bool pressOnTab(ViewContext& view, const MouseEvent& event);
    bool pressOnDivider(const ViewContext& view, const MouseEvent& event);
    void drag(ViewContext& view, const MouseEvent& event);
    void dragDivider(ViewContext& view, DividerGrab& grab, const MouseEvent& event);
    bool pressOnLink(ViewContext& view, const ViewLayout::Pane& pane, const MouseEvent& event);
    bool pressOnTitle(const ViewContext& view, const MouseEvent& event);
    void dragTab(ViewContext& view, const Uuid& surface, const MouseEvent& event);
    void dragTitle(ViewContext& view, const Uuid& leaf, const MouseEvent& event);
    void release(ViewContext& view, const MouseEvent& event);
    void copySelection(ViewContext& view);
    void turnWheel(ViewContext& view, SidebarPainter& sidebar, const MouseEvent& event);
    SelectionMode countClick(const ViewContext& view, const MouseEvent& event);

    Grab grab_;
    Instant lastClickAt_;
    int lastClickX_ = -1;
    int lastClickY_ = -1;
    int clicks_ = 0;
};

}  // namespace orvane
