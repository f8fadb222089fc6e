#pragma once

#include <string>

#include "OrvaneCore/Support/Uuid.h"
#include "OrvaneShell/View/CellRect.h"
#include "OrvaneShell/View/Overlays/LineEditor.h"
#include "OrvaneShell/View/ViewOverlay.h"

namespace orvane {

/// What an agent asks, with its options as keys: answers without going there.
class AnswerOverlay final : public ViewOverlay {
 public:
    explicit AnswerOverlay(const Uuid& session) : session_(session) {}

    void paint(const ViewContext& view, Canvas& canvas) override;
    Next key(ViewContext& view, const KeyEvent& key) override;
    Next text(ViewContext& view, const std::string& pasted) override;
    Next click(ViewContext& view, int x, int y) override;
    Next refresh(ViewContext& view) override;
    std::string hint(const ViewContext& view) const override;

 private:
    template <typename Act>
    Next answer(ViewContext& view, Act act);
    Next answerNumber(ViewContext& view, int number);
    Next command(ViewContext& view, char32_t letter);

    Uuid session_;
    bool isTyping_ = false;  ///< an answer in words
    LineEditor words_;
    std::string refusal_;
    CellRect optionRows_;
};

}  // namespace orvane
