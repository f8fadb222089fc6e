#include "OrvaneShell/View/ViewMouse.h"

#include <algorithm>

#include "OrvaneCore/Support/Text.h"
#include "OrvaneShell/View/Commands/ViewCommands.h"
#include "OrvaneShell/View/Input/MouseForwarding.h"
#include "OrvaneShell/View/Overlays/HistoryMode.h"
#include "OrvaneShell/View/Painting/PaneTitle.h"
#include "OrvaneShell/View/PaneLinks.h"
#include "OrvaneShell/View/TracePanel.h"
#include "TerminalEmulator/HeadlessTerminal.h"

namespace orvane {

namespace {

using Action = MouseEvent::Action;
using Button = MouseEvent::Button;

constexpr Duration doubleClickTime = std::chrono::milliseconds(400);
constexpr int wheelRows = 3;
constexpr int foldMarkCols = 2;

bool isWheel(Button button) {
    return button == Button::wheelUp || button == Button::wheelDown || button == Button::wheelLeft ||
           button == Button::wheelRight;
}

Terminal* terminalIn(const ViewContext& view, const ViewLayout::Pane* pane) {
    const SessionController* session = pane == nullptr ? nullptr : view.sessionIn(*pane);
    return session == nullptr || session->terminal() == nullptr ? nullptr : &session->terminal()->terminal;
}

/// The event in the cells of the pane, held at its edges.
MouseEvent within(const ViewLayout::Pane& pane, MouseEvent event) {
    event.x = std::clamp(event.x - pane.body.x, 0, std::max(0, pane.body.cols - 1));
    event.y = std::clamp(event.y - pane.body.y, 0, std::max(0, pane.body.rows - 1));
    return event;
}

/// The trace panel that lies there over the pane; null when none does.
TracePanel* panelAt(const ViewContext& view, const ViewLayout::Pane* pane, const MouseEvent& event) {
    const SessionController* session = pane == nullptr ? nullptr : view.sessionIn(*pane);
    TracePanel* panel = session == nullptr ? nullptr : view.tracePanel(session->id());
    const bool isThere = panel != nullptr && TracePanel::area(pane->body).contains(event.x, event.y);
    return isThere ? panel : nullptr;
}

bool goesToProgram(const MouseEvent& event, const Terminal& terminal) {
    return !event.modifiers.shift && MouseForwarding::isWanted(event, terminal.modes());
}

}  // namespace

bool ViewMouse::wantsMotion(const ViewContext& view) {
    const auto leaf = view.focusedLeaf();
    const Terminal* terminal = leaf ? terminalIn(view, view.layout.pane(*leaf)) : nullptr;
    return terminal != nullptr && terminal->modes().mouseMode == MouseMode::anyEvent;
}

void ViewMouse::take(ViewContext& view, SidebarPainter& sidebar, const MouseEvent& event) {
    if (isWheel(event.button)) {
        if (event.action == Action::press) turnWheel(view, sidebar, event);
    } else if (event.action == Action::press) {
        press(view, sidebar, event);
    } else if (event.action == Action::motion) {
        drag(view, event);
    } else {
        release(view, event);
    }
    view.actions.requestFrame();
}

void ViewMouse::press(ViewContext& view, SidebarPainter& sidebar, const MouseEvent& event) {
    grab_ = std::monostate();
    view.drag.reset();
    view.link.reset();
    view.selection.clear();
    if (view.overlay != nullptr && !pressOnOverlay(view, event)) return;
    if (const SidebarRow* row = sidebar.rowAt(view, event.x, event.y))
        return pressInSidebar(view, SidebarRow(*row), event);
    if (pressOnTab(view, event)) return;
    const bool isOnDivider = !pressOnTitle(view, event) && pressOnDivider(view, event);
    const ViewLayout::Pane* pane = view.layout.paneAt(event.x, event.y);
    if (pane == nullptr) return;
    if (pane->body.contains(event.x, event.y)) return pressInPane(view, ViewLayout::Pane(*pane), event);
    if (!isOnDivider || view.focusedLeaf() != pane->leaf) view.focus(Uuid(pane->leaf));
}

/// Whether the press is also for what lies below.
bool ViewMouse::pressOnOverlay(ViewContext& view, const MouseEvent& event) {
    auto current = std::move(view.overlay);
    const auto next = current->click(view, event.x, event.y);
    if (next == ViewOverlay::Next::stays && view.overlay == nullptr) view.overlay = std::move(current);
    return view.overlay != nullptr && view.overlay->passesClicks();
}

void ViewMouse::pressInSidebar(ViewContext& view, const SidebarRow& row, const MouseEvent& event) {
    view.zoomedLeaf.reset();
    if (row.session) return view.store.selectSession(*row.session);
    if (!row.comingBack && event.x < view.layout.sidebar.x + foldMarkCols)
        return view.store.toggleCollapsed(row.project);
    view.store.selectProject(row.project);
}

bool ViewMouse::pressOnTab(ViewContext& view, const MouseEvent& event) {
    if (!view.layout.tabStrip.contains(event.x, event.y)) return false;
    if (view.layout.hiddenTabsMark.contains(event.x, event.y)) {
        TabCommands::showHidden(view);
        return true;
    }
    const ViewLayout::Tab* tab = view.layout.tabAt(event.x, event.y);
    if (tab == nullptr) return true;
    const Uuid surface = tab->surface;
    if (event.button == Button::left) grab_ = TabGrab{surface};
    view.zoomedLeaf.reset();
    view.store.activateSurface(surface);
    return true;
}

bool ViewMouse::pressOnDivider(const ViewContext& view, const MouseEvent& event) {
    const ViewLayout::Divider* divider = view.layout.dividerAt(event.x, event.y);
    if (divider == nullptr || event.button != Button::left) return false;
    const ViewLayout::Split& split = view.layout.splits[divider->split];
    grab_ = DividerGrab{.split = split.id,
                        .index = divider->index,
                        .axis = split.axis,
                        .at = split.axis == PaneAxis::horizontal ? event.x : event.y};
    return true;
}

void ViewMouse::pressInPane(ViewContext& view, const ViewLayout::Pane& pane, const MouseEvent& event) {
    if (view.focusedLeaf() != pane.leaf) view.focus(pane.leaf);
    if (panelAt(view, &pane, event) != nullptr) return;
    SessionController* session = view.sessionIn(pane);
    Terminal* terminal = terminalIn(view, &pane);
    if (terminal == nullptr) return;
    if (pressOnLink(view, pane, event)) return;
    const MouseEvent inside = within(pane, event);
    if (view.overlay == nullptr && goesToProgram(inside, *terminal)) {
        grab_ = ProgramGrab{pane.leaf};
        return MouseForwarding::forward(inside, *terminal);
    }
    if (event.button != Button::left) return;
    grab_ = SelectionGrab{pane.leaf};
    view.selection.begin(session->id(), *terminal, PaneSelection::shownAt(*terminal, inside.x, inside.y),
                         countClick(view, event));
}

/// With Control, which no program needs for a click on an address.
bool ViewMouse::pressOnLink(ViewContext& view, const ViewLayout::Pane& pane, const MouseEvent& event) {
    if (!event.modifiers.control || event.button != Button::left) return false;
    const auto link = PaneLinks::at(view, pane, event.x, event.y);
    if (!link) return false;
    grab_ = LinkGrab{.leaf = pane.leaf, .address = link->text};
    view.link = PaneLink{.session = *pane.content, .match = *link};
    return true;
}

/// The name of a pane is what one takes to drag it; the line behind it is the edge of the pane above.
bool ViewMouse::pressOnTitle(const ViewContext& view, const MouseEvent& event) {
    const ViewLayout::Pane* pane = view.layout.paneAt(event.x, event.y);
    const bool isName = pane != nullptr && event.button == Button::left && pane->content &&
                        pane->title.contains(event.x, event.y) && event.x < PaneTitle::nameEnd(view, *pane);
    if (isName) grab_ = TitleGrab{pane->leaf};
    return isName;
}

SelectionMode ViewMouse::countClick(const ViewContext& view, const MouseEvent& event) {
    const Instant now = view.store.loop().now();
    const bool isSame = event.x == lastClickX_ && event.y == lastClickY_ && now - lastClickAt_ < doubleClickTime;
    clicks_ = isSame ? clicks_ % 3 + 1 : 1;
    lastClickAt_ = now;
    lastClickX_ = event.x;
    lastClickY_ = event.y;
    return clicks_ == 1 ? SelectionMode::character : clicks_ == 2 ? SelectionMode::word : SelectionMode::row;
}

void ViewMouse::drag(ViewContext& view, const MouseEvent& event) {
    if (auto* divider = std::get_if<DividerGrab>(&grab_)) return dragDivider(view, *divider, event);
    if (const auto* tab = std::get_if<TabGrab>(&grab_)) return dragTab(view, tab->surface, event);
    if (const auto* title = std::get_if<TitleGrab>(&grab_)) return dragTitle(view, title->leaf, event);
    if (std::holds_alternative<LinkGrab>(grab_)) return;
    if (const auto* selecting = std::get_if<SelectionGrab>(&grab_)) {
        const ViewLayout::Pane* pane = view.layout.pane(selecting->leaf);
        Terminal* terminal = terminalIn(view, pane);
        if (terminal == nullptr) return;
        // Past the edge the text scrolls along.
        if (event.y < pane->body.y) HistoryMode::scroll(*terminal, -1);
        if (event.y >= pane->body.bottom()) HistoryMode::scroll(*terminal, 1);
        const MouseEvent inside = within(*pane, event);
        return view.selection.extend(*terminal, PaneSelection::shownAt(*terminal, inside.x, inside.y));
    }
    const auto* held = std::get_if<ProgramGrab>(&grab_);
    const ViewLayout::Pane* pane =
        held != nullptr ? view.layout.pane(held->leaf) : view.layout.paneAt(event.x, event.y);
    Terminal* terminal = terminalIn(view, pane);
    const bool isInside = pane != nullptr && (held != nullptr || pane->body.contains(event.x, event.y));
    if (terminal == nullptr || !isInside || view.overlay != nullptr) return;
    if (goesToProgram(event, *terminal)) MouseForwarding::forward(within(*pane, event), *terminal);
}

void ViewMouse::dragDivider(ViewContext& view, DividerGrab& grab, const MouseEvent& event) {
    const int place = grab.axis == PaneAxis::horizontal ? event.x : event.y;
    const auto divider = std::ranges::find_if(view.layout.dividers, [&](const ViewLayout::Divider& each) {
        return view.layout.splits[each.split].id == grab.split && each.index == grab.index;
    });
    if (divider == view.layout.dividers.end() || place == grab.at || !view.layout.surface) return;
    // From where it is drawn, which may be elsewhere than the mouse when a pane is at its smallest.
    const int drawn = grab.axis == PaneAxis::horizontal ? divider->line.x : divider->line.y;
    grab.at = place;
    const auto shares = view.layout.movingDivider(*divider, place - drawn);
    if (shares) view.store.resizeSplit(*view.layout.surface, grab.split, *shares);
}

/// The tab goes where the mouse is, one place at a time.
void ViewMouse::dragTab(ViewContext& view, const Uuid& surface, const MouseEvent& event) {
    const auto& tabs = view.layout.tabs;
    const auto from = std::ranges::find(tabs, surface, &ViewLayout::Tab::surface);
    const auto to = std::ranges::find_if(
        tabs, [&](const ViewLayout::Tab& tab) { return event.x >= tab.rect.x && event.x < tab.rect.right(); });
    if (from == tabs.end() || to == tabs.end() || from == to) return;
    if (to < from) return view.store.moveSurface(surface, Uuid(to->surface));
    for (auto next = std::next(from); next <= to; ++next)
        view.store.moveSurface(Uuid(next->surface), surface);
}

void ViewMouse::dragTitle(ViewContext& view, const Uuid& leaf, const MouseEvent& event) {
    const ViewLayout::Pane* pane = view.layout.pane(leaf);
    if (pane == nullptr || !pane->content) return;
    if (!view.drag) view.drag = PaneDrag{.leaf = leaf, .content = *pane->content, .target = {}, .preview = {}};
    view.drag->moveTo(view, event.x, event.y);
}

bool ViewMouse::cancelDrag(ViewContext& view) {
    if (std::holds_alternative<TitleGrab>(grab_)) grab_ = std::monostate();
    return std::exchange(view.drag, std::nullopt).has_value();
}

void ViewMouse::release(ViewContext& view, const MouseEvent& event) {
    view.link.reset();
    if (const auto drag = std::exchange(view.drag, std::nullopt)) drag->drop(view);
    const Grab grab = std::exchange(grab_, std::monostate());
    if (const auto* program = std::get_if<ProgramGrab>(&grab)) {
        const ViewLayout::Pane* pane = view.layout.pane(program->leaf);
        if (Terminal* terminal = terminalIn(view, pane)) MouseForwarding::forward(within(*pane, event), *terminal);
    } else if (const auto* pressed = std::get_if<LinkGrab>(&grab)) {
        const ViewLayout::Pane* pane = view.layout.pane(pressed->leaf);
        const auto under = pane == nullptr ? std::nullopt : PaneLinks::at(view, *pane, event.x, event.y);
        if (under && under->text == pressed->address) PaneLinks::open(view, pressed->address);
    } else if (std::holds_alternative<SelectionGrab>(grab)) {
        copySelection(view);
    }
}

void ViewMouse::copySelection(ViewContext& view) {
    const auto session = view.selection.session();
    const std::string text = session && view.store.session(*session) != nullptr ? view.selection.text() : "";
    if (text.empty()) return view.selection.clear();
    view.actions.copy(text);
    view.say(view.l10n.plural("view.copied", static_cast<long long>(Text::characterCount(text))));
}

void ViewMouse::turnWheel(ViewContext& view, SidebarPainter& sidebar, const MouseEvent& event) {
    const int rows = event.button == Button::wheelUp ? -wheelRows : event.button == Button::wheelDown ? wheelRows : 0;
    if (view.overlay != nullptr && view.overlay->wheel(view, event.x, event.y, rows)) return;
    if (view.layout.sidebar.contains(event.x, event.y)) return sidebar.scroll(rows);
    const ViewLayout::Pane* pane = view.layout.paneAt(event.x, event.y);
    if (TracePanel* panel = panelAt(view, pane, event)) return panel->scroll(rows);
    Terminal* terminal = terminalIn(view, pane);
    if (terminal == nullptr) return;
    if (goesToProgram(event, *terminal)) return MouseForwarding::forward(within(*pane, event), *terminal);
    const std::string keys = MouseForwarding::wheelKeys(event, *terminal);
    if (!keys.empty()) return view.sessionIn(*pane)->type(keys);
    if (!terminal->isAlternateBufferActive()) HistoryMode::scroll(*terminal, rows);
}

}  // namespace orvane
