#pragma once

#include "OrvaneShell/View/Input/InputEvent.h"
#include "OrvaneShell/View/Overlays/ListOverlay.h"
#include "OrvaneShell/View/ViewContext.h"

/// The commands of the keyboard; the key is the one that was typed behind the leader.
namespace orvane {

namespace PaneCommands {
void splitColumns(ViewContext& view, const KeyEvent& key);
void splitRows(ViewContext& view, const KeyEvent& key);
void focusBeside(ViewContext& view, const KeyEvent& key);
void focusNext(ViewContext& view, const KeyEvent& key);
void focusPrevious(ViewContext& view, const KeyEvent& key);
void zoom(ViewContext& view, const KeyEvent& key);
void resize(ViewContext& view, const KeyEvent& key);
void move(ViewContext& view, const KeyEvent& key);
void layouts(ViewContext& view, const KeyEvent& key);
void history(ViewContext& view, const KeyEvent& key);
void search(ViewContext& view, const KeyEvent& key);
void saveHistory(ViewContext& view, const KeyEvent& key);
void close(ViewContext& view, const KeyEvent& key);
std::vector<ListOverlay::Item> layoutItems(const ViewContext& view);
}  // namespace PaneCommands

namespace SessionCommands {
void launch(ViewContext& view, const KeyEvent& key);
void goTo(ViewContext& view, const KeyEvent& key);
void answer(ViewContext& view, const KeyEvent& key);
void nextCall(ViewContext& view, const KeyEvent& key);
void conversations(ViewContext& view, const KeyEvent& key);
void trace(ViewContext& view, const KeyEvent& key);
void rename(ViewContext& view, const KeyEvent& key);
/// All projects and sessions.
std::vector<ListOverlay::Item> destinations(const ViewContext& view);
/// Starts again in its pane what has ended there.
void restart(ViewContext& view, SessionController& ended);
}  // namespace SessionCommands

namespace TabCommands {
void open(ViewContext& view, const KeyEvent& key);
void next(ViewContext& view, const KeyEvent& key);
void previous(ViewContext& view, const KeyEvent& key);
void select(ViewContext& view, const KeyEvent& key);
void rename(ViewContext& view, const KeyEvent& key);
void close(ViewContext& view, const KeyEvent& key);
/// All tabs of all projects.
std::vector<ListOverlay::Item> tabItems(const ViewContext& view);
/// The tabs that have no room in the strip.
void showHidden(ViewContext& view);
}  // namespace TabCommands

namespace ProjectCommands {
void next(ViewContext& view, const KeyEvent& key);
void previous(ViewContext& view, const KeyEvent& key);
void open(ViewContext& view, const KeyEvent& key);
void rename(ViewContext& view, const KeyEvent& key);
void fold(ViewContext& view, const KeyEvent& key);
}  // namespace ProjectCommands

namespace FrameCommands {
void toggleSidebar(ViewContext& view, const KeyEvent& key);
void detach(ViewContext& view, const KeyEvent& key);
void quit(ViewContext& view, const KeyEvent& key);
void help(ViewContext& view, const KeyEvent& key);
/// Everything that can be done or gone to, found by typing.
void palette(ViewContext& view, const KeyEvent& key);
/// The dialog for a quit that waits for its answer, whoever asked for it.
void askToQuit(ViewContext& view);
/// The dialog for a session whose closing waits for its answer.
void askToClose(ViewContext& view, const Uuid& session);
}  // namespace FrameCommands

/// The direction of an arrow key or of h, j, k and l.
std::optional<ViewLayout::Direction> directionOf(const KeyEvent& key);

}  // namespace orvane
