#pragma once

#include <map>
#include <set>

#include "OrvaneShell/View/Canvas.h"
#include "OrvaneShell/View/ViewContext.h"

namespace orvane {

/// Draws the pane tree: titles, dividers, and in each pane the terminal of its session. Gives terminals the size of
/// their panes.
class PanePainter {
 public:
    /// What a program writes changes the contents alone, and where a title says how far back the history is shown.
    enum class Part { whole, contents };
    void paint(ViewContext& view, Canvas& canvas, Part part);
    /// Whether a program is in the middle of a change that it wants to be seen at once; its pane keeps what it showed.
    bool isHeldBack() const { return isHeldBack_; }

 private:
    void paintPane(ViewContext& view, Canvas& canvas, const ViewLayout::Pane& pane, Part part);
    bool isTitleStale(const ViewContext& view, const ViewLayout::Pane& pane);
    void paintTerminal(ViewContext& view, Canvas& canvas, const ViewLayout::Pane& pane, SessionController& session);

    /// What each pane showed in the last frame, and where: only that can be kept.
    std::map<Uuid, std::pair<Uuid, CellRect>> shown_;
    std::map<Uuid, std::pair<Uuid, CellRect>> showsNow_;
    /// Panes that show their history.
    std::set<Uuid> scrolledBack_;
    bool isHeldBack_ = false;
    bool wasCovered_ = false;
};

}  // namespace orvane
