#pragma once

#include "OrvaneShell/View/CanvasPen.h"
#include "OrvaneShell/View/ViewContext.h"

namespace orvane::PaneTitle {

/// The row above a pane: what runs there and how it is; of a session that waits, what it asks and the keys that answer.
void paint(const ViewContext& view, CanvasPen& pen, const ViewLayout::Pane& pane);

/// The column behind the name of what runs there.
int nameEnd(const ViewContext& view, const ViewLayout::Pane& pane);

}  // namespace orvane::PaneTitle
