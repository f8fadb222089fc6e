#pragma once

#include <memory>
#include <string>

#include "OrvaneCore/Support/Uuid.h"
#include "OrvaneShell/View/Overlays/CopyCursor.h"
#include "OrvaneShell/View/Overlays/CopyKeys.h"
#include "OrvaneShell/View/Overlays/CopySearch.h"
#include "OrvaneShell/View/Overlays/PromptOverlay.h"
#include "OrvaneShell/View/ViewOverlay.h"

namespace orvane {

/// Reading what a session has written: a cursor that goes through screen and history, searches, selects and copies.
/// What is shown stays while the program goes on writing; at the end the view follows it again.
class HistoryMode final : public ViewOverlay {
 public:
    /// The terminal is that of the session; its view is held from now on.
    HistoryMode(const Uuid& session, Terminal& terminal);

    void beginSearch(const ViewContext& view);

    void paint(const ViewContext& view, Canvas& canvas) override;
    bool paintRow(const ViewContext& view, Canvas& canvas, const CellRect& row) override;
    Next key(ViewContext& view, const KeyEvent& key) override;
    Next text(ViewContext& view, const std::string& pasted) override;
    Next click(ViewContext& view, int x, int y) override;
    bool passesClicks() const override { return prompt_ == nullptr; }
    bool wheel(ViewContext& view, int x, int y, int rows) override;
    Next refresh(ViewContext& view) override;
    void dismissed(ViewContext& view) override;
    std::string hint(const ViewContext& view) const override;

    /// Moves the view of a terminal by so many rows, up when negative.
    static void scroll(Terminal& terminal, int rows);
    static bool isAtNewest(const Terminal& terminal);

 private:
    Next act(ViewContext& view, Terminal& terminal, CopyAction action);
    bool takeCount(const KeyEvent& key);
    void move(ViewContext& view, Terminal& terminal, CopyMotion motion);
    void select(ViewContext& view, const Terminal& terminal, SelectionMode mode);
    void swapEnds(ViewContext& view, Terminal& terminal);
    void extendSelection(ViewContext& view, const Terminal& terminal) const;
    /// The mouse may have selected since, and the cursor is where it ended.
    void followSelection(const ViewContext& view, Terminal& terminal);
    void toPrompt(ViewContext& view, Terminal& terminal, CopyAction action);
    void save(ViewContext& view);
    Next copy(ViewContext& view, const Terminal& terminal);
    Next leave(ViewContext& view);
    bool isSelecting(const ViewContext& view) const { return view.selection.session() == session_; }
    CopyCursor::Columns columns(const ViewContext& view) const;

    Uuid session_;
    CopyCursor cursor_;
    CopySearch search_;
    std::unique_ptr<PromptOverlay> prompt_;  ///< asks where to save the history
    int count_ = 0;                          ///< typed before a motion
};

}  // namespace orvane
