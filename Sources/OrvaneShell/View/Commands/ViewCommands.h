#pragma once

#include "OrvaneShell/View/Input/InputEvent.h"
#include "OrvaneShell/View/Overlays/ListOverlay.h"
#include "OrvaneShell/View/ViewContext.h"

/// What the commands do.
namespace orvane {

namespace PaneCommands {
void splitColumns(ViewContext& view);
void splitRows(ViewContext& view);
void open(ViewContext& view);
void focus(ViewContext& view, ViewLayout::Direction direction);
void pull(ViewContext& view, ViewLayout::Direction direction);
void grow(ViewContext& view);
void shrink(ViewContext& view);
void swapNext(ViewContext& view);
void swapPrevious(ViewContext& view);
void focusNext(ViewContext& view);
void focusPrevious(ViewContext& view);
void zoom(ViewContext& view);
void resize(ViewContext& view);
void move(ViewContext& view);
void breakOut(ViewContext& view);
void sendToTab(ViewContext& view);
void layouts(ViewContext& view);
void history(ViewContext& view);
void historyPage(ViewContext& view);
void search(ViewContext& view);
void saveHistory(ViewContext& view);
/// The addresses in the pane, to be opened.
void links(ViewContext& view);
void close(ViewContext& view);
std::vector<ListOverlay::Item> layoutItems(const ViewContext& view);

template <ViewLayout::Direction direction>
void focusBeside(ViewContext& view) {
    focus(view, direction);
}
template <ViewLayout::Direction direction>
void pullEdge(ViewContext& view) {
    pull(view, direction);
}
}  // namespace PaneCommands

namespace SessionCommands {
void launch(ViewContext& view);
void goTo(ViewContext& view);
void answer(ViewContext& view);
/// Everything that waits for the user, to be answered in place.
void waiting(ViewContext& view);
void nextCall(ViewContext& view);
void conversations(ViewContext& view);
void trace(ViewContext& view);
void rename(ViewContext& view);
/// All projects and sessions.
std::vector<ListOverlay::Item> destinations(const ViewContext& view);
/// Starts again in its pane what has ended there.
void restart(ViewContext& view, SessionController& ended);
}  // namespace SessionCommands

namespace TabCommands {
void open(ViewContext& view);
void next(ViewContext& view);
void previous(ViewContext& view);
void selectAt(ViewContext& view, int number);
void moveLeft(ViewContext& view);
void moveRight(ViewContext& view);
void rename(ViewContext& view);
void close(ViewContext& view);
/// As the strip calls it.
std::string titleOf(const ViewContext& view, const SurfaceMeta& meta);
/// All tabs of all projects.
std::vector<ListOverlay::Item> tabItems(const ViewContext& view);
/// The tabs that have no room in the strip.
void showHidden(ViewContext& view);

template <int number>
void select(ViewContext& view) {
    selectAt(view, number);
}
}  // namespace TabCommands

namespace ProjectCommands {
void next(ViewContext& view);
void previous(ViewContext& view);
void open(ViewContext& view);
void rename(ViewContext& view);
void fold(ViewContext& view);
}  // namespace ProjectCommands

namespace FrameCommands {
void toggleSidebar(ViewContext& view);
/// All preferences, to be changed in place.
void settings(ViewContext& view);
void lock(ViewContext& view);
void repeat(ViewContext& view);
void detach(ViewContext& view);
void quit(ViewContext& view);
void help(ViewContext& view);
/// Everything that can be done or gone to, found by typing.
void palette(ViewContext& view);
/// The dialog for a quit that waits for its answer, whoever asked for it.
void askToQuit(ViewContext& view);
/// The dialog for a session whose closing waits for its answer.
void askToClose(ViewContext& view, const Uuid& session);
}  // namespace FrameCommands

/// The direction of an arrow key or of h, j, k and l.
std::optional<ViewLayout::Direction> directionOf(const KeyEvent& key);

}  // namespace orvane
