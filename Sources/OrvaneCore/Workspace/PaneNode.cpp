#include "OrvaneCore/Workspace/PaneNode.h"

#include <algorithm>
#include <utility>

#include "OrvaneCore/Workspace/PaneFractions.h"
#include "OrvaneCore/Workspace/PaneMetrics.h"

namespace orvane {

namespace {

using Leaf = PaneNode::Leaf;
using Split = PaneNode::Split;

/// The first leaf, in leaf order, that the predicate accepts; null when there is none. The leaf is as constant as the
/// node.
template <typename Node, typename Predicate>
auto findLeaf(Node& node, const Predicate& accepts) -> decltype(std::get_if<Leaf>(&node.value)) {
    if (auto* leaf = std::get_if<Leaf>(&node.value)) return accepts(*leaf) ? leaf : nullptr;
    for (auto& child : std::get<Split>(node.value).children) {
        if (auto* found = findLeaf(child, accepts)) return found;
    }
    return nullptr;
}

template <typename Node, typename Visit>
void forEachLeaf(Node& node, const Visit& visit) {
    findLeaf(node, [&](auto& leaf) {
        visit(leaf);
        return false;
    });
}

auto hasID(const Uuid& id) {
    return [&id](const Leaf& leaf) { return leaf.id == id; };
}

std::optional<Uuid> idOf(const Leaf* leaf) {
    return leaf == nullptr ? std::nullopt : std::optional(leaf->id);
}

Split* findSplit(PaneNode& node, const Uuid& id) {
    auto* split = std::get_if<Split>(&node.value);
    if (split == nullptr || split->id == id) return split;
    for (PaneNode& child : split->children) {
        if (Split* found = findSplit(child, id)) return found;
    }
    return nullptr;
}

PaneNode emptyLeaf() {
    return {Leaf{.id = Uuid::random()}};
}

PaneNode halves(PaneAxis axis, PaneNode first, PaneNode second) {
    Split split{.id = Uuid::random(), .axis = axis, .children = {}, .fractions = PaneFractions::equal(2)};
    split.children.reserve(2);
    split.children.push_back(std::move(first));
    split.children.push_back(std::move(second));
    return {std::move(split)};
}

struct Insertion {
    Leaf leaf;
    Uuid nextTo;
    PaneAxis axis;
    bool before;
};

void insertBeside(Split& split, std::size_t index, const Insertion& insertion) {
    const std::size_t newIndex = insertion.before ? index : index + 1;
    PaneFractions::halve(split.fractions, index, newIndex);
    split.children.insert(split.children.begin() + static_cast<std::ptrdiff_t>(newIndex), PaneNode{insertion.leaf});
}

PaneNode pairOf(Leaf old, const Insertion& insertion) {
    PaneNode first{insertion.before ? insertion.leaf : old};
    PaneNode second{insertion.before ? old : insertion.leaf};
    return halves(insertion.axis, std::move(first), std::move(second));
}

/// Whether the neighbour was found at or below the node, which has `depth` splits above it.
bool insert(PaneNode& node, const Insertion& insertion, std::size_t depth = 0) {
    if (const auto* leaf = std::get_if<Leaf>(&node.value)) {
        if (leaf->id != insertion.nextTo) return false;
        node = pairOf(*leaf, insertion);
        return true;
    }
    auto& split = std::get<Split>(node.value);
    const bool takesNewChild = split.axis == insertion.axis || depth + 1 >= PaneNode::maximumDepth;
    for (std::size_t index = 0; index < split.children.size(); ++index) {
        const auto* leaf = std::get_if<Leaf>(&split.children[index].value);
        if (takesNewChild && leaf != nullptr && leaf->id == insertion.nextTo) {
            insertBeside(split, index, insertion);
            return true;
        }
        if (insert(split.children[index], insertion, depth + 1)) return true;
    }
    return false;
}

/// Whether anything of the node is left.
bool remove(PaneNode& node, const Uuid& id) {
    if (const auto* leaf = std::get_if<Leaf>(&node.value)) return leaf->id != id;
    auto& split = std::get<Split>(node.value);
    std::vector<PaneNode> children;
    std::vector<double> fractions;
    for (std::size_t index = 0; index < split.children.size(); ++index) {
        if (!remove(split.children[index], id)) continue;
        children.push_back(std::move(split.children[index]));
        fractions.push_back(split.fractions[index]);
    }
    if (children.empty()) return false;
    if (children.size() == 1) {
        node = std::move(children.front());
        return true;
    }
    split.children = std::move(children);
    split.fractions = PaneFractions::normalised(std::move(fractions));
    return true;
}

void freshenIDs(PaneNode& node) {
    std::visit([](auto& part) { part.id = Uuid::random(); }, node.value);
    if (auto* split = std::get_if<Split>(&node.value)) std::ranges::for_each(split->children, freshenIDs);
}

}  // namespace

bool PaneNode::Split::operator==(const Split&) const = default;

Uuid PaneNode::id() const {
    return std::visit([](const auto& part) { return part.id; }, value);
}

std::vector<Uuid> PaneNode::leafIDs() const {
    std::vector<Uuid> ids;
    forEachLeaf(*this, [&](const Leaf& leaf) { ids.push_back(leaf.id); });
    return ids;
}

std::vector<Uuid> PaneNode::contentIDs() const {
    std::vector<Uuid> ids;
    forEachLeaf(*this, [&](const Leaf& leaf) {
        if (leaf.contentID) ids.push_back(*leaf.contentID);
    });
    return ids;
}

bool PaneNode::contains(const Uuid& leaf) const {
    return findLeaf(*this, hasID(leaf)) != nullptr;
}

std::optional<Uuid> PaneNode::contentID(const Uuid& ofLeaf) const {
    const Leaf* leaf = findLeaf(*this, hasID(ofLeaf));
    return leaf == nullptr ? std::nullopt : leaf->contentID;
}

std::optional<Uuid> PaneNode::leafID(const Uuid& showingContent) const {
    return idOf(findLeaf(*this, [&](const Leaf& leaf) { return leaf.contentID == showingContent; }));
}

std::optional<Uuid> PaneNode::firstEmptyLeafID() const {
    return idOf(findLeaf(*this, [](const Leaf& leaf) { return !leaf.contentID; }));
}

std::optional<PaneSize> PaneNode::size(const Uuid& ofLeaf, const PaneSize& in) const {
    if (const auto* leaf = std::get_if<Leaf>(&value)) return leaf->id == ofLeaf ? std::optional(in) : std::nullopt;
    const auto& split = std::get<Split>(value);
    const std::vector<PaneSize> sizes = PaneMetrics::childSizes(split, in);
    for (std::size_t index = 0; index < sizes.size(); ++index) {
        if (const auto found = split.children[index].size(ofLeaf, sizes[index])) return found;
    }
    return std::nullopt;
}

PaneNode PaneNode::assigningContent(const std::optional<Uuid>& content, const Uuid& toLeaf) const {
    PaneNode tree = *this;
    if (Leaf* leaf = findLeaf(tree, hasID(toLeaf))) leaf->contentID = content;
    return tree;
}

PaneNode PaneNode::clearing(const Uuid& session) const {
    PaneNode tree = *this;
    forEachLeaf(tree, [&](Leaf& leaf) {
        if (leaf.contentID == session) leaf.contentID.reset();
    });
    return tree;
}

PaneNode PaneNode::splitting(const Uuid& leaf, PaneAxis axis, const Uuid& newLeaf) const {
    return inserting(std::nullopt, newLeaf, leaf, axis, false);
}

PaneNode PaneNode::inserting(const std::optional<Uuid>& session, const Uuid& asLeaf, const Uuid& nextTo, PaneAxis axis,
                             bool before) const {
    PaneNode tree = *this;
    if (contains(asLeaf)) return tree;
    insert(tree, {.leaf = {.id = asLeaf, .contentID = session}, .nextTo = nextTo, .axis = axis, .before = before});
    return tree;
}

std::optional<PaneNode> PaneNode::removing(const Uuid& leaf) const {
    PaneNode tree = *this;
    return remove(tree, leaf) ? std::optional(std::move(tree)) : std::nullopt;
}

PaneNode PaneNode::updatingFractions(const Uuid& ofSplit, const std::vector<double>& to) const {
    PaneNode tree = *this;
    Split* split = findSplit(tree, ofSplit);
    if (split != nullptr && PaneFractions::fits(to, split->children.size())) {
        split->fractions = PaneFractions::normalised(to);
    }
    return tree;
}

PaneNode PaneNode::template_(const std::set<Uuid>& preserving) const {
    PaneNode tree = *this;
    freshenIDs(tree);
    forEachLeaf(tree, [&](Leaf& leaf) {
        if (leaf.contentID && !preserving.contains(*leaf.contentID)) leaf.contentID.reset();
    });
    return tree;
}

PaneNode PaneNode::single() {
    return emptyLeaf();
}

PaneNode PaneNode::twoColumns() {
    return halves(PaneAxis::horizontal, emptyLeaf(), emptyLeaf());
}

PaneNode PaneNode::twoRows() {
    return halves(PaneAxis::vertical, emptyLeaf(), emptyLeaf());
}

PaneNode PaneNode::onePlusTwo() {
    return halves(PaneAxis::horizontal, emptyLeaf(), twoRows());
}

PaneNode PaneNode::grid() {
    return halves(PaneAxis::vertical, twoColumns(), twoColumns());
}

}  // namespace orvane
