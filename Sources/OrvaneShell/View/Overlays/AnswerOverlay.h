#pragma once

#include <string>
#include <utility>
#include <vector>

#include "OrvaneCore/Support/Uuid.h"
#include "OrvaneShell/View/CanvasPen.h"
#include "OrvaneShell/View/Overlays/LineEditor.h"
#include "OrvaneShell/View/ViewOverlay.h"
#include "Platform/MainLoop.h"

namespace orvane {

class SessionController;

/// What agents ask, with the options as keys: answers without going there.
class AnswerOverlay final : public ViewOverlay {
 public:
    enum class Scope {
        one,
        all,  ///< everything that waits, one after the other in one list; it stays until nothing waits any more
    };
    AnswerOverlay(const Uuid& session, Scope scope) : session_(session), scope_(scope) {}

    void paint(const ViewContext& view, Canvas& canvas) override;
    Next key(ViewContext& view, const KeyEvent& key) override;
    Next text(ViewContext& view, const std::string& pasted) override;
    Next click(ViewContext& view, int x, int y) override;
    bool wheel(ViewContext& view, int x, int y, int rows) override;
    Next refresh(ViewContext& view) override;
    std::string hint(const ViewContext& view) const override;

 private:
    template <typename Act>
    Next answer(ViewContext& view, Act act);
    Next answerNumber(ViewContext& view, int number);
    Next command(ViewContext& view, char32_t letter);
    std::vector<SessionController*> asking(const ViewContext& view) const;
    void move(const ViewContext& view, int by);
    void paintOne(const ViewContext& view, Canvas& canvas, const SessionController& session);
    void paintAll(const ViewContext& view, Canvas& canvas, const std::vector<SessionController*>& sessions);
    int paintQuestion(CanvasPen& pen, const CellRect& room, const SessionController& session);
    void paintLastRow(CanvasPen& pen, Canvas& canvas, const CellRect& inside);

    Uuid session_;
    Scope scope_;
    bool isTyping_ = false;  ///< an answer in words
    LineEditor words_;
    std::string refusal_;
    Instant readUntil_;  ///< another question has come up by itself
    CellRect optionRows_;
    /// Where the others stand, to be clicked.
    std::vector<std::pair<int, Uuid>> headings_;
};

}  // namespace orvane
