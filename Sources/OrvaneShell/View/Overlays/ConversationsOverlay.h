#pragma once

#include <optional>
#include <string>

#include "Orvane/History/HistoryService.h"
#include "OrvaneShell/View/CellRect.h"
#include "OrvaneShell/View/Overlays/ConversationPreview.h"
#include "OrvaneShell/View/Overlays/LineEditor.h"
#include "OrvaneShell/View/ViewOverlay.h"

namespace orvane {

/// All past conversations: found while somebody types, looked into and taken up again.
class ConversationsOverlay final : public ViewOverlay {
 public:
    explicit ConversationsOverlay(ViewContext& view);

    void paint(const ViewContext& view, Canvas& canvas) override;
    Next key(ViewContext& view, const KeyEvent& key) override;
    Next text(ViewContext& view, const std::string& pasted) override;
    Next click(ViewContext& view, int x, int y) override;
    bool wheel(ViewContext& view, int x, int y, int rows) override;
    std::string hint(const ViewContext& view) const override;

    /// From so many columns on the preview stands beside the list; in a narrower terminal it takes its place.
    static constexpr int colsForPreview = 100;

 private:
    enum class Part { list, preview };

    const HistoryCorpus::Row* chosen() const;
    /// The rows are those of the last wish, as far as anybody knows yet.
    bool isSettled() const;
    /// The chosen conversation stays chosen wherever it stands now; a new search begins at its best.
    void noteRows();
    void beginSearch();
    void move(int by);
    void moveTo(int row);
    bool moveKey(const KeyEvent& key);
    bool filterKey(char32_t letter);
    Next resume();
    void resumed(const std::string& refusal);

    void place(const Canvas& canvas, const CellRect& inside);
    void paintSearch(const ViewContext& view, Canvas& canvas, const CellRect& row);
    void paintFilters(const ViewContext& view, CanvasPen& pen, const CellRect& row) const;
    void paintList(const ViewContext& view, CanvasPen& pen);

    ViewContext& view_;
    LineEditor search_;
    std::size_t chosen_ = 0;    ///< of the service's rows
    std::size_t first_ = 0;     ///< in the topmost row
    std::string chosenPath_;    ///< the transcript of the chosen one
    bool isNewSearch_ = false;  ///< whose rows are still to come
    bool isAccepted_ = false;   ///< Enter was typed before the rows of the search were there
    bool isResuming_ = false;
    Part part_ = Part::list;
    CellRect list_;
    CellRect previewArea_;
    ConversationPreview preview_;
    Registration changes_;
    std::shared_ptr<bool> isAlive_ = std::make_shared<bool>(true);
};

}  // namespace orvane
