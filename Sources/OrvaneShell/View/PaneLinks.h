#pragma once

#include <optional>
#include <string>
#include <vector>

#include "OrvaneCore/Support/Uuid.h"
#include "OrvaneShell/View/CanvasPen.h"
#include "OrvaneShell/View/ViewLayout.h"
#include "TerminalEmulator/Links/LinkMatch.h"

namespace orvane {

class Terminal;
class ViewContext;

/// An address in the terminal of a session.
struct PaneLink {
    Uuid session;
    LinkMatch match;
};

/// Addresses in panes: those that programs mark, and those that stand in the text, over several rows too.
namespace PaneLinks {

/// Under a cell of the canvas.
std::optional<LinkMatch> at(const ViewContext& view, const ViewLayout::Pane& pane, int x, int y);
/// All that the pane shows now, from top to bottom, each address once.
std::vector<LinkMatch> shown(const ViewContext& view, const ViewLayout::Pane& pane);
/// Opens it on the user's desktop; where there is none, or the address is of a kind that might run something, it goes
/// into the clipboard, and the user is told.
void open(ViewContext& view, const std::string& address);
/// Marks all parts of a link of a terminal that was drawn into the rectangle.
void paint(CanvasPen& pen, const CellRect& body, const Terminal& terminal, const PaneLink& link);

}  // namespace PaneLinks

}  // namespace orvane
