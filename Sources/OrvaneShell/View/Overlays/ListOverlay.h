#pragma once

#include <functional>
#include <string>
#include <vector>

#include "OrvaneCore/Support/FuzzyRanking.h"
#include "OrvaneShell/View/CellRect.h"
#include "OrvaneShell/View/Overlays/LineEditor.h"
#include "OrvaneShell/View/ViewOverlay.h"

namespace orvane {

/// A list to choose from; what is typed narrows it, the best match first.
class ListOverlay final : public ViewOverlay {
 public:
    struct Item {
        std::string label;
        std::string detail = {};  ///< dim, at the right
        std::function<void(ViewContext&)> choose;
        Attribute look = {};
        /// The list stays when it is chosen, and shows what it has changed.
        bool staysOpen = false;
    };
    /// Asked again whenever the workspace has changed.
    using Source = std::function<std::vector<Item>(const ViewContext& view)>;

    ListOverlay(const ViewContext& view, std::string title, Source source);

    void paint(const ViewContext& view, Canvas& canvas) override;
    Next key(ViewContext& view, const KeyEvent& key) override;
    Next text(ViewContext& view, const std::string& pasted) override;
    Next click(ViewContext& view, int x, int y) override;
    bool wheel(ViewContext& view, int x, int y, int rows) override;
    Next refresh(ViewContext& view) override;
    void dismissed(ViewContext& view) override;
    std::string hint(const ViewContext& view) const override;

    /// Chooses the first item of that label, as if it had been moved to.
    void point(std::string_view label);
    /// Runs when the list goes, before what was chosen.
    std::function<void(ViewContext&)> onGone;

 private:
    void take(std::vector<Item> items);
    void narrow();
    void move(int by);
    void moveWithinEnds(int by);
    Next choose(ViewContext& view);

    std::string title_;
    Source source_;
    std::vector<Item> items_;
    FuzzyRanking ranking_{{}};        ///< of `items_`
    std::vector<std::size_t> shown_;  ///< of `items_`
    std::size_t chosen_ = 0;          ///< in `shown_`
    std::size_t first_ = 0;           ///< in `shown_`, in the topmost row
    LineEditor filter_;
    CellRect rows_;
};

}  // namespace orvane
