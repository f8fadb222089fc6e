#include <boost/json.hpp>
#include <set>

#include "Fuzzing.h"
#include "OrvaneCore/Workspace/PaneFractions.h"
#include "OrvaneCore/Workspace/PaneLayout.h"
#include "OrvaneCore/Workspace/PaneMove.h"
#include "OrvaneCore/Workspace/PanePlacement.h"

using namespace orvane;
using fuzzing::require;

namespace {

void requireSound(const PaneNode& node, std::set<Uuid>& ids, std::size_t depth = 0) {
    require(ids.insert(node.id()).second, "an id stands for one node");
    const auto* split = std::get_if<PaneNode::Split>(&node.value);
    if (split == nullptr) return;
    require(depth < PaneNode::maximumDepth, "splits nest to the limit at most");
    require(split->children.size() >= 2, "a split has two children at least");
    require(PaneFractions::fits(split->fractions, split->children.size()), "every child has a share");
    for (const PaneNode& child : split->children)
        requireSound(child, ids, depth + 1);
}

/// Two bytes choose the edit, the pane and the content.
PaneNode edited(const PaneNode& node, std::uint8_t first, std::uint8_t second) {
    const std::vector<Uuid> leaves = node.leafIDs();
    const Uuid leaf = leaves[second % leaves.size()];
    const Uuid content(std::array<std::uint8_t, 16>{0xC0, static_cast<std::uint8_t>(second % 8)});
    const auto axis = second % 2 == 0 ? PaneAxis::horizontal : PaneAxis::vertical;
    const double share = second == 0 ? 0 : 1.0 / second;
    switch (first % 9) {
        case 0:
            return node.splitting(leaf, axis);
        case 1:
            return node.inserting(content, Uuid::random(), leaf, axis, first < 128);
        case 2:
            return node.clearing(content);
        case 3:
            return node.assigningContent(content, leaf);
        case 4:
            return PaneMove::moving(content, leaf, static_cast<PaneDropZone>(first / 9 % 5), node);
        case 5:
            return node.updatingFractions(node.id(), {share, 1 - share});
        case 6:
            return PanePlacement::placing(content, node, leaf, {.width = second * 8.0, .height = first * 8.0}).tree;
        case 7:
            return PaneLayout::applying(PaneLayout::all[second % PaneLayout::all.size()].build(), node).tree;
        default:
            return node.removing(leaf).value_or(PaneNode::single());
    }
}

}  // namespace

/// A tree as JSON, and after a zero byte the edits, of which fifty are done.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view input = fuzzing::asText(data, size);
    const std::size_t end = std::min(input.find('\0'), size);
    const auto json = Json::parse(input.substr(0, end));
    PaneNode node = (json ? PaneNode::decode(*json) : std::nullopt).value_or(PaneNode::single());
    for (std::size_t at = end; at == end || (at + 1 < size && at < end + 100); at += 2) {
        if (at > end) node = edited(node, data[at - 1], data[at]);
        std::set<Uuid> ids = {Uuid()};
        requireSound(node, ids);
    }
    require(PaneNode::decode(node.encode()) == node, "a tree reads back equal");
    return 0;
}
