#include "OrvaneShell/View/ViewCommand.h"

#include <algorithm>

#include "OrvaneShell/View/Commands/ViewCommands.h"
#include "OrvaneShell/View/Input/KeyText.h"

namespace orvane {

namespace {

using Group = ViewCommand::Group;

const std::vector<ViewCommand>& table() {
    static const std::vector<ViewCommand> commands = {
        {Group::panes, {"%", "|"}, {}, "view.command.splitColumns", PaneCommands::splitColumns},
        {Group::panes, {"\"", "-"}, {}, "view.command.splitRows", PaneCommands::splitRows},
        {Group::panes,
         {"Left", "Right", "Up", "Down", "h", "j", "k", "l"},
         "←↓↑→",
         "view.command.focus",
         PaneCommands::focusBeside},
        {Group::panes, {"o", "Tab"}, {}, "view.command.nextPane", PaneCommands::focusNext},
        {Group::panes, {";", "S-Tab"}, {}, "view.command.previousPane", PaneCommands::focusPrevious},
        {Group::panes, {"z"}, {}, "view.command.zoom", PaneCommands::zoom},
        {Group::panes, {"r"}, {}, "view.command.resize", PaneCommands::resize},
        {Group::panes, {"m"}, {}, "view.command.move", PaneCommands::move},
        {Group::panes, {"Space"}, {}, "view.command.layouts", PaneCommands::layouts},
        {Group::panes, {"[", "PageUp"}, {}, "view.command.history", PaneCommands::history},
        {Group::panes, {"/"}, {}, "view.command.search", PaneCommands::search},
        {Group::panes, {"S"}, {}, "view.command.saveHistory", PaneCommands::saveHistory},
        {Group::panes, {"x"}, {}, "view.command.closePane", PaneCommands::close},
        {Group::sessions, {"c"}, {}, "view.command.launch", SessionCommands::launch},
        {Group::sessions, {"w"}, {}, "view.command.goTo", SessionCommands::goTo},
        {Group::sessions, {"a"}, {}, "view.command.answer", SessionCommands::answer},
        {Group::sessions, {"u"}, {}, "view.command.nextCall", SessionCommands::nextCall},
        {Group::sessions, {"H"}, {}, "view.command.conversations", SessionCommands::conversations},
        {Group::sessions, {"T"}, {}, "view.command.trace", SessionCommands::trace},
        {Group::sessions, {"$"}, {}, "view.command.renameSession", SessionCommands::rename},
        {Group::tabs, {"t"}, {}, "view.command.newTab", TabCommands::open},
        {Group::tabs, {"n"}, {}, "view.command.nextTab", TabCommands::next},
        {Group::tabs, {"p"}, {}, "view.command.previousTab", TabCommands::previous},
        {Group::tabs,
         {"1", "2", "3", "4", "5", "6", "7", "8", "9"},
         "1-9",
         "view.command.selectTab",
         TabCommands::select},
        {Group::tabs, {","}, {}, "view.command.renameTab", TabCommands::rename},
        {Group::tabs, {"&"}, {}, "view.command.closeTab", TabCommands::close},
        {Group::projects, {")", "N"}, {}, "view.command.nextProject", ProjectCommands::next},
        {Group::projects, {"(", "P"}, {}, "view.command.previousProject", ProjectCommands::previous},
        {Group::projects, {"O"}, {}, "view.command.openProject", ProjectCommands::open},
        {Group::projects, {"R"}, {}, "view.command.renameProject", ProjectCommands::rename},
        {Group::projects, {"f"}, {}, "view.command.foldProject", ProjectCommands::fold},
        {Group::view, {":"}, {}, "view.command.palette", FrameCommands::palette},
        {Group::view, {"b"}, {}, "view.command.sidebar", FrameCommands::toggleSidebar},
        {Group::view, {"d"}, {}, "view.command.detach", FrameCommands::detach},
        {Group::view, {"Q"}, {}, "view.command.quit", FrameCommands::quit},
        {Group::view, {"?"}, {}, "view.command.help", FrameCommands::help},
    };
    return commands;
}

}  // namespace

std::span<const ViewCommand> ViewCommand::all() {
    return table();
}

const ViewCommand* ViewCommand::of(const KeyEvent& key) {
    const auto means = [&](const ViewCommand& command) {
        return std::ranges::any_of(command.keys, [&](std::string_view name) {
            const auto pattern = KeyText::parse(name);
            return pattern && pattern->matches(key);
        });
    };
    const auto found = std::ranges::find_if(table(), means);
    return found == table().end() ? nullptr : &*found;
}

}  // namespace orvane
