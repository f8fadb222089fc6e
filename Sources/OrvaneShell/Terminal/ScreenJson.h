#pragma once

#include <string>

#include "OrvaneCore/Support/Json.h"

namespace orvane {

class Terminal;

/// Whether the history comes with the screen.
enum class HistoryPart { shown, left };

/// The screen with its history, every cell with its look: what `terminal feed --json` prints. Cells missing at the
/// right are default blanks, and what has its default is left out of a cell: "t" a blank, "w" 1, no colour, no
/// attribute.
JsonValue screenJson(const Terminal& terminal, HistoryPart history = HistoryPart::shown);

/// The rows as text, a line each.
std::string screenText(const Terminal& terminal, HistoryPart history = HistoryPart::left);

}  // namespace orvane
