#include "OrvaneShell/View/Overlays/ConfirmOverlay.h"

#include <algorithm>

#include "OrvaneCore/Support/Text.h"
#include "OrvaneShell/View/CanvasPen.h"
#include "OrvaneShell/View/Painting/DialogBox.h"
#include "OrvaneShell/View/Painting/ViewLook.h"
#include "OrvaneShell/View/Painting/WrappedText.h"
#include "OrvaneShell/View/ViewContext.h"

namespace orvane {

namespace {

constexpr int widest = 64;

CellRect paintButton(CanvasPen& pen, int x, int y, const std::string& label, bool isChosen) {
    const int cols = pen.text(x, y, "[ " + label + " ]", isChosen ? ViewLook::selected : ViewLook::plain);
    return {x, y, cols, 1};
}

}  // namespace

void ConfirmOverlay::paint(const ViewContext& view, Canvas& canvas) {
    const std::string cancel = view.l10n.text("common.cancel");
    const auto lines = wrapped(question_.body, std::min(widest, canvas.cols() - 4));
    const CellRect inside = DialogBox::paint(canvas, question_.title, widest, static_cast<int>(lines.size()) + 2);
    CanvasPen pen(canvas, inside);
    int y = inside.y;
    for (const std::string& line : lines)
        pen.text(inside.x, y++, line, ViewLook::plain);
    y = inside.bottom() - 1;
    confirmButton_ = paintButton(pen, inside.x, y, question_.confirm + " (y)", isConfirmChosen_);
    cancelButton_ = paintButton(pen, confirmButton_.right() + 2, y, cancel + " (n)", !isConfirmChosen_);
}

ViewOverlay::Next ConfirmOverlay::answer(ViewContext& view, bool isYes) {
    const auto& act = isYes ? question_.onConfirm : question_.onCancel;
    if (act) act(view);
    return Next::closes;
}

ViewOverlay::Next ConfirmOverlay::key(ViewContext& view, const KeyEvent& key) {
    switch (key.name) {
        case KeyName::left:
        case KeyName::right:
        case KeyName::tab:
        case KeyName::up:
        case KeyName::down:
            isConfirmChosen_ = !isConfirmChosen_;
            return Next::stays;
        case KeyName::enter:
            return answer(view, isConfirmChosen_);
        case KeyName::escape:
            return answer(view, false);
        case KeyName::character:
            if (key.character == 'y' || key.character == 'Y') return answer(view, true);
            if (key.character == 'n' || key.character == 'N' || key.character == 'q') return answer(view, false);
            if (key.modifiers.control && key.character == 'c') return answer(view, false);
            return Next::stays;
        default:
            return Next::stays;
    }
}

ViewOverlay::Next ConfirmOverlay::click(ViewContext& view, int x, int y) {
    if (confirmButton_.contains(x, y)) return answer(view, true);
    if (cancelButton_.contains(x, y)) return answer(view, false);
    return Next::stays;
}

ViewOverlay::Next ConfirmOverlay::refresh(ViewContext& view) {
    if (!question_.isMeant || question_.isMeant(view)) return Next::stays;
    return answer(view, false);
}

void ConfirmOverlay::dismissed(ViewContext& view) {
    if (question_.onCancel) question_.onCancel(view);
}

std::string ConfirmOverlay::hint(const ViewContext& view) const {
    return view.l10n.text("view.hint.confirm");
}

}  // namespace orvane
