#pragma once

#include <string_view>

#include "OrvaneShell/View/CanvasPen.h"
#include "OrvaneShell/View/CellRect.h"

namespace orvane::DialogBox {

/// Draws an empty framed box of so many inner cells, or as many as there are, in the middle of the canvas, and dims
/// what is behind it. Returns its inside.
CellRect paint(Canvas& canvas, std::string_view title, int cols, int rows);

/// Draws the frame with its title and empties what is inside.
void frame(CanvasPen& pen, const CellRect& box, std::string_view title);

}  // namespace orvane::DialogBox
