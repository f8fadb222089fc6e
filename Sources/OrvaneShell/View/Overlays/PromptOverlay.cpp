#include "OrvaneShell/View/Overlays/PromptOverlay.h"

#include "OrvaneShell/View/CanvasPen.h"
#include "OrvaneShell/View/Painting/DialogBox.h"
#include "OrvaneShell/View/Painting/ViewLook.h"
#include "OrvaneShell/View/ViewContext.h"

namespace orvane {

namespace {

constexpr int promptCols = 64;

}  // namespace

void PromptOverlay::paint(const ViewContext& /*view*/, Canvas& canvas) {
    const CellRect inside = DialogBox::paint(canvas, title_, promptCols, 2);
    CanvasPen pen(canvas, inside);
    editor_.paint(pen, canvas, inside.x, inside.y, inside.cols);
    pen.text(inside.x, inside.y + 1, refusal_, ViewLook::colored(ViewLook::red), inside.cols);
}

ViewOverlay::Next PromptOverlay::key(ViewContext& view, const KeyEvent& key) {
    if (key.name == KeyName::escape || (key.modifiers.control && key.character == 'c')) return Next::closes;
    if (key.name != KeyName::enter) {
        if (editor_.key(key)) refusal_.clear();
        return Next::stays;
    }
    refusal_ = accept_(view, editor_.text());
    return refusal_.empty() ? Next::closes : Next::stays;
}

ViewOverlay::Next PromptOverlay::text(ViewContext& /*view*/, const std::string& pasted) {
    editor_.insert(pasted);
    return Next::stays;
}

std::string PromptOverlay::hint(const ViewContext& view) const {
    return view.l10n.text("view.hint.prompt");
}

}  // namespace orvane
