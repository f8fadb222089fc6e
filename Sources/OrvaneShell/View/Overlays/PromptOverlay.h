#pragma once

#include <functional>
#include <string>

#include "OrvaneShell/View/Overlays/LineEditor.h"
#include "OrvaneShell/View/ViewOverlay.h"

namespace orvane {

/// Asks for a line of text.
class PromptOverlay final : public ViewOverlay {
 public:
    /// Takes what was typed; a text is why it was not accepted, and the person may type on.
    using Accept = std::function<std::string(ViewContext& view, const std::string& text)>;

    PromptOverlay(std::string title, std::string text, Accept accept)
        : title_(std::move(title)), editor_(std::move(text)), accept_(std::move(accept)) {}

    void paint(const ViewContext& view, Canvas& canvas) override;
    Next key(ViewContext& view, const KeyEvent& key) override;
    Next text(ViewContext& view, const std::string& pasted) override;
    std::string hint(const ViewContext& view) const override;

 private:
    std::string title_;
    LineEditor editor_;
    Accept accept_;
    std::string refusal_;
};

}  // namespace orvane
