#include "OrvaneCore/Workspace/PaneLayout.h"

#include <algorithm>
#include <set>

namespace orvane {

namespace {

std::vector<Uuid> distinct(const std::vector<Uuid>& ids) {
    std::vector<Uuid> result;
    std::set<Uuid> seen;
    std::ranges::copy_if(ids, std::back_inserter(result), [&](const Uuid& id) { return seen.insert(id).second; });
    return result;
}

/// Fills the leaves in order and returns how many contents were used.
std::size_t fill(PaneNode& node, const std::vector<Uuid>& contents, std::size_t used) {
    if (auto* leaf = std::get_if<PaneNode::Leaf>(&node.value)) {
        if (used == contents.size()) return used;
        leaf->contentID = contents[used];
        return used + 1;
    }
    for (PaneNode& child : std::get<PaneNode::Split>(node.value).children)
        used = fill(child, contents, used);
    return used;
}

}  // namespace

const std::array<PaneLayout, 5> PaneLayout::all = {{
    {.name = "single", .textKey = "menu.layout.single", .build = PaneNode::single},
    {.name = "twoColumns", .textKey = "menu.layout.twoColumns", .build = PaneNode::twoColumns},
    {.name = "twoRows", .textKey = "menu.layout.twoRows", .build = PaneNode::twoRows},
    {.name = "onePlusTwo", .textKey = "menu.layout.onePlusTwo", .build = PaneNode::onePlusTwo},
    {.name = "grid", .textKey = "menu.layout.grid", .build = PaneNode::grid},
}};

const PaneLayout* PaneLayout::named(std::string_view name) {
    const auto* layout = std::ranges::find(all, name, &PaneLayout::name);
    return layout == all.end() ? nullptr : layout;
}

PaneLayout::Applied PaneLayout::applying(const PaneNode& layout, const PaneNode& tree) {
    const std::vector<Uuid> contents = distinct(tree.contentIDs());
    Applied applied{.tree = layout.template_(), .unplaced = {}};
    const std::size_t used = fill(applied.tree, contents, 0);
    applied.unplaced.assign(contents.begin() + static_cast<std::ptrdiff_t>(used), contents.end());
    return applied;
}

}  // namespace orvane
