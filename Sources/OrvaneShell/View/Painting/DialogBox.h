#pragma once

#include <string_view>

#include "OrvaneShell/View/Canvas.h"
#include "OrvaneShell/View/CellRect.h"

namespace orvane::DialogBox {

/// Draws an empty framed box of so many inner cells, or as many as there are, in the middle of the canvas, and dims
/// what is behind it. Returns its inside.
CellRect paint(Canvas& canvas, std::string_view title, int cols, int rows);

}  // namespace orvane::DialogBox
