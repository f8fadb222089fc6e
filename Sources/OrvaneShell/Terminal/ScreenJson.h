#pragma once

#include "OrvaneCore/Support/Json.h"

namespace orvane {

class Terminal;

/// The screen with its history, every cell with its look: what `terminal feed --json` prints. Cells missing at the
/// right are default blanks, and what has its default is left out of a cell: "t" a blank, "w" 1, no colour, no
/// attribute.
JsonValue screenJson(const Terminal& terminal);

}  // namespace orvane
