#pragma once

#include <functional>
#include <string>

#include "OrvaneShell/View/CellRect.h"
#include "OrvaneShell/View/ViewOverlay.h"

namespace orvane {

/// A question with two answers. Return or the first letter of neither takes the safe one: only "y" confirms, or Return
/// on the button that confirms.
class ConfirmOverlay final : public ViewOverlay {
 public:
    struct Question {
        std::string title;
        std::string body;
        std::string confirm;  ///< what the button says
        std::function<void(ViewContext&)> onConfirm;
        std::function<void(ViewContext&)> onCancel = {};
        /// Whether there is still something to confirm.
        std::function<bool(ViewContext&)> isMeant = {};
    };

    explicit ConfirmOverlay(Question question) : question_(std::move(question)) {}

    void paint(const ViewContext& view, Canvas& canvas) override;
    Next key(ViewContext& view, const KeyEvent& key) override;
    Next click(ViewContext& view, int x, int y) override;
    Next refresh(ViewContext& view) override;
    void dismissed(ViewContext& view) override;
    std::string hint(const ViewContext& view) const override;

 private:
    Next answer(ViewContext& view, bool isYes);

    Question question_;
    bool isConfirmChosen_ = false;
    CellRect confirmButton_;
    CellRect cancelButton_;
};

}  // namespace orvane
