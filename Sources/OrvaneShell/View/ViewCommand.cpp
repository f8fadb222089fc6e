#include "OrvaneShell/View/ViewCommand.h"

#include <algorithm>
#include <iterator>
#include <vector>

#include "OrvaneShell/View/Commands/ViewCommands.h"

namespace orvane {

namespace {

using Group = ViewCommand::Group;
using Direction = ViewLayout::Direction;

// Group, name, key of the text; what it does; the family, the number, whether it repeats.

std::vector<ViewCommand> panes() {
    return {
        {Group::panes, "split-right", "view.command.splitColumns", PaneCommands::splitColumns},
        {Group::panes, "split-down", "view.command.splitRows", PaneCommands::splitRows},
        {Group::panes, "new-pane", "view.command.newPane", PaneCommands::open},
        {Group::panes, "focus-left", "view.command.focusLeft", PaneCommands::focusBeside<Direction::left>,
         "view.command.focus", 0, true},
        {Group::panes, "focus-down", "view.command.focusDown", PaneCommands::focusBeside<Direction::down>,
         "view.command.focus", 0, true},
        {Group::panes, "focus-up", "view.command.focusUp", PaneCommands::focusBeside<Direction::up>,
         "view.command.focus", 0, true},
        {Group::panes, "focus-right", "view.command.focusRight", PaneCommands::focusBeside<Direction::right>,
         "view.command.focus", 0, true},
        {Group::panes, "next-pane", "view.command.nextPane", PaneCommands::focusNext, {}, 0, true},
        {Group::panes, "previous-pane", "view.command.previousPane", PaneCommands::focusPrevious, {}, 0, true},
        {Group::panes, "zoom", "view.command.zoom", PaneCommands::zoom},
        {Group::panes, "resize", "view.command.resize", PaneCommands::resize},
        {Group::panes, "resize-left", "view.command.resizeLeft", PaneCommands::pullEdge<Direction::left>,
         "view.command.resizeAtOnce", 0, true},
        {Group::panes, "resize-down", "view.command.resizeDown", PaneCommands::pullEdge<Direction::down>,
         "view.command.resizeAtOnce", 0, true},
        {Group::panes, "resize-up", "view.command.resizeUp", PaneCommands::pullEdge<Direction::up>,
         "view.command.resizeAtOnce", 0, true},
        {Group::panes, "resize-right", "view.command.resizeRight", PaneCommands::pullEdge<Direction::right>,
         "view.command.resizeAtOnce", 0, true},
        {Group::panes, "grow-pane", "view.command.grow", PaneCommands::grow, "view.command.growShrink", 0, true},
        {Group::panes, "shrink-pane", "view.command.shrink", PaneCommands::shrink, "view.command.growShrink", 0, true},
        {Group::panes, "swap-previous", "view.command.swapPrevious", PaneCommands::swapPrevious, "view.command.swap"},
        {Group::panes, "swap-next", "view.command.swapNext", PaneCommands::swapNext, "view.command.swap"},
        {Group::panes, "move", "view.command.move", PaneCommands::move},
        {Group::panes, "break-pane", "view.command.breakPane", PaneCommands::breakOut},
        {Group::panes, "send-to-tab", "view.command.sendToTab", PaneCommands::sendToTab},
        {Group::panes, "layouts", "view.command.layouts", PaneCommands::layouts},
        {Group::panes, "history", "view.command.history", PaneCommands::history},
        {Group::panes, "history-page", "view.command.historyPage", PaneCommands::historyPage},
        {Group::panes, "search", "view.command.search", PaneCommands::search},
        {Group::panes, "save-history", "view.command.saveHistory", PaneCommands::saveHistory},
        {Group::panes, "links", "view.command.links", PaneCommands::links},
        {Group::panes, "close-pane", "view.command.closePane", PaneCommands::close},
    };
}

std::vector<ViewCommand> sessions() {
    return {
        {Group::sessions, "new-session", "view.command.launch", SessionCommands::launch},
        {Group::sessions, "go-to", "view.command.goTo", SessionCommands::goTo},
        {Group::sessions, "next-waiting", "view.command.nextCall", SessionCommands::nextCall},
        {Group::sessions, "waiting", "view.command.waiting", SessionCommands::waiting},
        {Group::sessions, "answer", "view.command.answer", SessionCommands::answer},
        {Group::sessions, "conversations", "view.command.conversations", SessionCommands::conversations},
        {Group::sessions, "trace", "view.command.trace", SessionCommands::trace},
        {Group::sessions, "rename-session", "view.command.renameSession", SessionCommands::rename},
    };
}

std::vector<ViewCommand> tabs() {
    return {
        {Group::tabs, "new-tab", "view.command.newTab", TabCommands::open},
        {Group::tabs, "next-tab", "view.command.nextTab", TabCommands::next, {}, 0, true},
        {Group::tabs, "previous-tab", "view.command.previousTab", TabCommands::previous, {}, 0, true},
        {Group::tabs, "tab-1", "view.command.selectTabNumber", TabCommands::select<1>, "view.command.selectTab", 1},
        {Group::tabs, "tab-2", "view.command.selectTabNumber", TabCommands::select<2>, "view.command.selectTab", 2},
        {Group::tabs, "tab-3", "view.command.selectTabNumber", TabCommands::select<3>, "view.command.selectTab", 3},
        {Group::tabs, "tab-4", "view.command.selectTabNumber", TabCommands::select<4>, "view.command.selectTab", 4},
        {Group::tabs, "tab-5", "view.command.selectTabNumber", TabCommands::select<5>, "view.command.selectTab", 5},
        {Group::tabs, "tab-6", "view.command.selectTabNumber", TabCommands::select<6>, "view.command.selectTab", 6},
        {Group::tabs, "tab-7", "view.command.selectTabNumber", TabCommands::select<7>, "view.command.selectTab", 7},
        {Group::tabs, "tab-8", "view.command.selectTabNumber", TabCommands::select<8>, "view.command.selectTab", 8},
        {Group::tabs, "tab-9", "view.command.selectTabNumber", TabCommands::select<9>, "view.command.selectTab", 9},
        {Group::tabs, "hidden-tabs", "view.command.hiddenTabs", TabCommands::showHidden},
        {Group::tabs, "move-tab-left", "view.command.moveTabLeft", TabCommands::moveLeft, "view.command.moveTab", 0,
         true},
        {Group::tabs, "move-tab-right", "view.command.moveTabRight", TabCommands::moveRight, "view.command.moveTab", 0,
         true},
        {Group::tabs, "rename-tab", "view.command.renameTab", TabCommands::rename},
        {Group::tabs, "close-tab", "view.command.closeTab", TabCommands::close},
    };
}

std::vector<ViewCommand> projects() {
    return {
        {Group::projects, "next-project", "view.command.nextProject", ProjectCommands::next, {}, 0, true},
        {Group::projects, "previous-project", "view.command.previousProject", ProjectCommands::previous, {}, 0, true},
        {Group::projects, "open-project", "view.command.openProject", ProjectCommands::open},
        {Group::projects, "rename-project", "view.command.renameProject", ProjectCommands::rename},
        {Group::projects, "fold-project", "view.command.foldProject", ProjectCommands::fold},
    };
}

std::vector<ViewCommand> view() {
    return {
        {Group::view, "palette", "view.command.palette", FrameCommands::palette},
        {Group::view, "settings", "view.command.settings", FrameCommands::settings},
        {Group::view, "sidebar", "view.command.sidebar", FrameCommands::toggleSidebar},
        {Group::view, "repeat", "view.command.repeat", FrameCommands::repeat},
        {Group::view, "lock", "view.command.lock", FrameCommands::lock},
        {Group::view, "detach", "view.command.detach", FrameCommands::detach},
        {Group::view, "quit", "view.command.quit", FrameCommands::quit},
        {Group::view, "help", "view.command.help", FrameCommands::help},
    };
}

const std::vector<ViewCommand>& table() {
    static const std::vector<ViewCommand> commands = [] {
        std::vector<ViewCommand> all;
        for (auto&& group : {panes(), sessions(), tabs(), projects(), view()})
            std::ranges::copy(group, std::back_inserter(all));
        return all;
    }();
    return commands;
}

}  // namespace

std::string ViewCommand::label(const L10n& l10n) const {
    return number == 0 ? l10n.text(textKey) : l10n.text(textKey, number);
}

std::span<const ViewCommand> ViewCommand::all() {
    return table();
}

const ViewCommand* ViewCommand::named(std::string_view name) {
    const auto found = std::ranges::find(table(), name, &ViewCommand::name);
    return found == table().end() ? nullptr : &*found;
}

}  // namespace orvane
