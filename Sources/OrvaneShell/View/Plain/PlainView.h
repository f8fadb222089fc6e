#pragma once

#include <optional>
#include <string>
#include <vector>

#include "OrvaneShell/View/Plain/PlainWriter.h"
#include "OrvaneShell/View/ViewContext.h"

namespace orvane {

/// The workspace as plain lines, for a screen reader: the focused pane, dialogs, notices and what other sessions need.
/// Main thread only.
class PlainView {
 public:
    /// Said with the next frame, before what the pane shows.
    void announce(std::string line) { announcements_.push_back(std::move(line)); }
    /// The next frame tells all of the pane.
    void repeat() { isWhole_ = true; }

    /// The bytes for what is new. `canvas` has the focused pane as it is drawn.
    std::string frame(ViewContext& view, const Canvas& canvas, GlyphSet glyphs);

 private:
    /// Which pane, in which size: of another one the rows cannot be compared.
    struct Place {
        std::optional<Uuid> leaf;
        std::optional<Uuid> session;
        bool operator==(const Place&) const = default;
    };

    void tellPlace(const ViewContext& view);
    void tellPane(const ViewContext& view, const Canvas& canvas);
    void tellHint(const ViewContext& view);

    PlainWriter writer_;
    std::vector<std::string> announcements_;
    std::optional<Place> place_;
    std::string placeLine_;
    std::string notice_;
    std::string hint_;
    CellRect size_;
    bool isWhole_ = true;
    bool isNewPlace_ = false;
    Canvas dialog_{0, 0};
};

}  // namespace orvane
