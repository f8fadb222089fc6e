#pragma once

#include "OrvaneShell/View/ViewOverlay.h"

namespace orvane {

/// All keys of the view.
class HelpOverlay final : public ViewOverlay {
 public:
    void paint(const ViewContext& view, Canvas& canvas) override;
    Next key(ViewContext& view, const KeyEvent& key) override;
    Next click(ViewContext& /*view*/, int /*x*/, int /*y*/) override { return Next::closes; }
    std::string hint(const ViewContext& view) const override;

 private:
    int first_ = 0;  ///< line in the topmost row
    int lastFirst_ = 0;
};

}  // namespace orvane
