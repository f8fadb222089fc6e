#pragma once

#include <fmt/format.h>

#include <cctype>
#include <cstdint>
#include <random>
#include <string>
#include <string_view>

#include "OrvaneCore/Workspace/PaneFractions.h"
#include "OrvaneCore/Workspace/PaneNode.h"

namespace orvane::testing {

/// Ids that a test can name: the content 'a', and the leaf that shows it.
inline Uuid namedID(std::uint8_t space, char name) {
    std::array<std::uint8_t, 16> bytes{};
    bytes[0] = space;
    bytes[15] = static_cast<std::uint8_t>(name);
    return Uuid(bytes);
}
inline Uuid content(char name) {
    return namedID(0xC0, name);
}
inline Uuid leaf(char name) {
    return namedID(0x1E, name);
}

/// Reads "h(a,v(b,.))": columns and rows of equal shares, lower-case letters for leaves that show the content of that
/// name, upper-case ones for the empty leaf of that name, '.' for an empty leaf with a fresh id.
class TreeReader {
 public:
    explicit TreeReader(std::string_view text) : rest_(text) {}

    PaneNode node() {
        const char name = take();
        if (rest_.empty() || rest_.front() != '(') return leafNamed(name);
        PaneNode::Split split{.id = Uuid::random(), .axis = name == 'h' ? PaneAxis::horizontal : PaneAxis::vertical};
        while (take() != ')')
            split.children.push_back(node());
        split.fractions = PaneFractions::equal(split.children.size());
        return {split};
    }

 private:
    static PaneNode leafNamed(char name) {
        if (name == '.') return PaneNode::single();
        const bool empty = std::isupper(static_cast<unsigned char>(name)) != 0;
        const auto lower = static_cast<char>(std::tolower(static_cast<unsigned char>(name)));
        return {PaneNode::Leaf{.id = leaf(lower), .contentID = empty ? std::nullopt : std::optional(content(lower))}};
    }

    char take() {
        const char first = rest_.at(0);
        rest_.remove_prefix(1);
        return first;
    }

    std::string_view rest_;
};

inline PaneNode tree(std::string_view text) {
    return TreeReader(text).node();
}

/// The shape and contents, "h(0.5 a, 0.5 v(0.5 b, 0.5 .))"; an unnamed content is '?'.
inline std::string text(const PaneNode& node) {
    if (const auto* pane = std::get_if<PaneNode::Leaf>(&node.value)) {
        if (!pane->contentID) return ".";
        const auto name = static_cast<char>(pane->contentID->bytes()[15]);
        return *pane->contentID == content(name) ? std::string(1, name) : "?";
    }
    const auto& split = std::get<PaneNode::Split>(node.value);
    std::string children;
    for (std::size_t index = 0; index < split.children.size(); ++index) {
        children +=
            fmt::format("{}{:g} {}", index == 0 ? "" : ", ", split.fractions.at(index), text(split.children[index]));
    }
    return fmt::format("{}({})", split.axis == PaneAxis::horizontal ? "h" : "v", children);
}

inline std::string text(const std::optional<PaneNode>& node) {
    return node ? text(*node) : "none";
}

inline const PaneNode::Split& rootSplit(const PaneNode& node) {
    return std::get<PaneNode::Split>(node.value);
}

/// Calls `visit(split, depth)` for every split, the root at depth 0.
template <typename Visit>
void forEachSplit(const PaneNode& node, const Visit& visit, std::size_t depth = 0) {
    const auto* split = std::get_if<PaneNode::Split>(&node.value);
    if (split == nullptr) return;
    visit(*split, depth);
    for (const PaneNode& child : split->children)
        forEachSplit(child, visit, depth + 1);
}

}  // namespace orvane::testing
