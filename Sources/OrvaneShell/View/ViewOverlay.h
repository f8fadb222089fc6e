#pragma once

#include <string>

#include "OrvaneShell/View/Canvas.h"
#include "OrvaneShell/View/CellRect.h"
#include "OrvaneShell/View/Input/InputEvent.h"

namespace orvane {

class ViewContext;

/// What lies over the panes and takes the keys while it is there: a dialog, a list, a mode such as that of resizing.
class ViewOverlay {
 public:
    /// Whether it goes on after an event. It may have opened another one meanwhile, which then takes its place.
    enum class Next { stays, closes };

    ViewOverlay() = default;
    ViewOverlay(const ViewOverlay&) = delete;
    ViewOverlay& operator=(const ViewOverlay&) = delete;
    virtual ~ViewOverlay() = default;

    /// Over all that is drawn already; may put the cursor somewhere, which is hidden otherwise.
    virtual void paint(const ViewContext& view, Canvas& canvas) = 0;
    /// Draws the bottom row itself, as one that takes text there does; false leaves it to the hint.
    virtual bool paintRow(const ViewContext& /*view*/, Canvas& /*canvas*/, const CellRect& /*row*/) { return false; }
    virtual Next key(ViewContext& view, const KeyEvent& key) = 0;
    virtual Next text(ViewContext& /*view*/, const std::string& /*pasted*/) { return Next::stays; }
    virtual Next click(ViewContext& /*view*/, int /*x*/, int /*y*/) { return Next::stays; }
    /// Whether a click that was told is also for what lies below, as under a mode of a pane.
    virtual bool passesClicks() const { return false; }
    /// So many rows, up when negative; false when what is below it shall scroll.
    virtual bool wheel(ViewContext& /*view*/, int /*x*/, int /*y*/, int /*rows*/) { return false; }
    /// The workspace has changed; what it is about may be gone.
    virtual Next refresh(ViewContext& /*view*/) { return Next::stays; }
    /// It goes without an answer, because the view does or another one comes.
    virtual void dismissed(ViewContext& /*view*/) {}
    /// Which keys work now, for the bottom row.
    virtual std::string hint(const ViewContext& view) const = 0;
};

}  // namespace orvane
