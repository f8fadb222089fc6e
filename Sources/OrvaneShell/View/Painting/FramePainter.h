#pragma once

#include "OrvaneShell/View/Canvas.h"
#include "OrvaneShell/View/ViewContext.h"

/// What is around the panes.
namespace orvane::FramePainter {

void paintTabs(const ViewContext& view, Canvas& canvas);

/// The bottom row: which keys work now, a notice, and how many sessions need the user.
void paintHints(const ViewContext& view, Canvas& canvas);

/// Where a pane that is dragged would go.
void paintDrag(const ViewContext& view, Canvas& canvas);

/// The first lines that a new user reads, over the lower part of the panes.
void paintWelcome(const ViewContext& view, Canvas& canvas);

/// The commands behind the leader, above the bottom row.
void paintCommands(const ViewContext& view, Canvas& canvas);

}  // namespace orvane::FramePainter
