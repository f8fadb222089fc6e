#include <algorithm>
#include <iterator>

#include "OrvaneShell/View/Commands/ViewCommands.h"
#include "OrvaneShell/View/Overlays/ListOverlay.h"
#include "OrvaneShell/View/ViewCommand.h"

namespace orvane::FrameCommands {

namespace {

using Item = ListOverlay::Item;

std::vector<Item> actions(const ViewContext& view) {
    std::vector<Item> items;
    for (const ViewCommand& command : ViewCommand::all()) {
        if (command.run == palette) continue;
        items.push_back(
            {.label = command.label(view.l10n), .detail = view.keysOf(command.name), .choose = command.run});
    }
    return items;
}

/// A list of its own says what kind of things its rows are; here each row has to.
std::vector<Item> named(const ViewContext& view, const char* textKey, std::vector<Item> items) {
    const std::string kind = view.l10n.text(textKey);
    for (Item& item : items) {
        const auto start = std::min(item.label.find_first_not_of(' '), item.label.size());
        item.label = kind + ": " + item.label.substr(start);
    }
    return items;
}

std::vector<Item> everything(const ViewContext& view) {
    std::vector<Item> items = actions(view);
    for (auto&& more : {named(view, "view.palette.goTo", SessionCommands::destinations(view)),
                        named(view, "view.palette.tab", TabCommands::tabItems(view)),
                        named(view, "view.palette.layout", PaneCommands::layoutItems(view))})
        std::ranges::copy(more, std::back_inserter(items));
    return items;
}

}  // namespace

void palette(ViewContext& view) {
    view.open(std::make_unique<ListOverlay>(view, view.l10n.text("view.palette.title"), everything));
}

}  // namespace orvane::FrameCommands
