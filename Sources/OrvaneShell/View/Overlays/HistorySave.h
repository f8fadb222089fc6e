#pragma once

#include <memory>
#include <string>

#include "OrvaneShell/View/Overlays/PromptOverlay.h"
#include "OrvaneShell/View/ViewContext.h"

/// Saving what a terminal shows and keeps as a text file.
namespace orvane::HistorySave {

/// All rows, those of the history first, rows joined by wrapping as one line; every line ends with a line feed, and
/// there are no blank ones at the end. While a program is on the alternate screen that screen follows the normal one.
std::string text(const Terminal& terminal);

/// Asks where to, proposing a name in the home folder, and writes the file behind. A file that is there already is
/// replaced when the same name is accepted twice. The session must have a terminal.
std::unique_ptr<PromptOverlay> prompt(const ViewContext& view, const SessionController& session);

}  // namespace orvane::HistorySave
