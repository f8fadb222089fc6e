#pragma once

#include <memory>
#include <string>

#include "OrvaneCore/Support/Uuid.h"
#include "OrvaneShell/View/Overlays/LineEditor.h"
#include "OrvaneShell/View/ViewOverlay.h"
#include "TerminalEmulator/SearchService.h"

namespace orvane {

/// Scrolls the history of a session's terminal and searches it.
class HistoryMode final : public ViewOverlay {
 public:
    explicit HistoryMode(const Uuid& session) : session_(session) {}

    void beginSearch() { isTyping_ = true; }

    void paint(const ViewContext& view, Canvas& canvas) override;
    Next key(ViewContext& view, const KeyEvent& key) override;
    Next text(ViewContext& view, const std::string& pasted) override;
    Next refresh(ViewContext& view) override;
    void dismissed(ViewContext& view) override;
    std::string hint(const ViewContext& view) const override;

    /// Moves the view of a terminal by so many rows, up when negative.
    static void scroll(Terminal& terminal, int rows);
    static bool isAtNewest(const Terminal& terminal);

 private:
    enum class Toward { older, newer };

    Next typeTerm(ViewContext& view, const KeyEvent& key);
    Next move(ViewContext& view, Terminal& terminal, const KeyEvent& key);
    void find(ViewContext& view, Terminal& terminal, Toward toward);
    Next leave(ViewContext& view);

    Uuid session_;
    bool isTyping_ = false;  ///< the term of a search
    LineEditor term_;
    std::unique_ptr<SearchService> search_;
};

}  // namespace orvane
