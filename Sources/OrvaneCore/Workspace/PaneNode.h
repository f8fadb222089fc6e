#pragma once

#include <cstddef>
#include <optional>
#include <set>
#include <variant>
#include <vector>

#include "OrvaneCore/Support/Json.h"
#include "OrvaneCore/Support/Uuid.h"
#include "OrvaneCore/Workspace/PaneAxis.h"
#include "OrvaneCore/Workspace/PaneGeometry.h"

namespace orvane {

/// The recursive split of a workspace into panes: a value. Every edit returns a new tree and leaves this one as it is.
/// An id that is not in the tree changes nothing. Leaf order is depth first, in child order.
struct PaneNode {
    /// A pane. It shows a running session or a surface that fits into a pane; no content is an empty pane.
    struct Leaf {
        Uuid id;
        std::optional<Uuid> contentID;

        bool operator==(const Leaf&) const = default;
    };

    struct Split {
        Uuid id;
        PaneAxis axis = PaneAxis::horizontal;
        std::vector<PaneNode> children;
        /// The share of each child; see PaneFractions.
        std::vector<double> fractions;

        bool operator==(const Split&) const;
    };

    /// Splits above the deepest leaf. A leaf that lies so deep is split along its parent's axis, whichever was asked
    /// for, and a deeper part of a file is read as an empty pane; so recursion over a tree is bounded, and a state
    /// file (three levels of JSON a split) stays within what `Json::parse` reads.
    static constexpr std::size_t maximumDepth = 512;

    std::variant<Leaf, Split> value;

    bool operator==(const PaneNode&) const = default;

    Uuid id() const;
    std::vector<Uuid> leafIDs() const;
    /// What the leaves show, without the empty ones.
    std::vector<Uuid> contentIDs() const;
    std::vector<Uuid> sessionIDs() const { return contentIDs(); }
    bool contains(const Uuid& leaf) const;
    std::optional<Uuid> contentID(const Uuid& ofLeaf) const;
    std::optional<Uuid> sessionID(const Uuid& ofLeaf) const { return contentID(ofLeaf); }
    /// The first leaf that shows the content.
    std::optional<Uuid> leafID(const Uuid& showingContent) const;
    std::optional<Uuid> firstEmptyLeafID() const;
    /// The size of a leaf when the whole tree fills `in`.
    std::optional<PaneSize> size(const Uuid& ofLeaf, const PaneSize& in) const;

    [[nodiscard]] PaneNode assigningContent(const std::optional<Uuid>& content, const Uuid& toLeaf) const;
    [[nodiscard]] PaneNode assigning(const std::optional<Uuid>& session, const Uuid& toLeaf) const {
        return assigningContent(session, toLeaf);
    }
    /// Empties every leaf that shows the content; the panes stay.
    [[nodiscard]] PaneNode clearing(const Uuid& session) const;
    /// Halves a leaf and puts an empty one behind it.
    [[nodiscard]] PaneNode splitting(const Uuid& leaf, PaneAxis axis, const Uuid& newLeaf = Uuid::random()) const;
    /// Halves the leaf `nextTo` and puts a leaf with the content in front of or behind it. Nothing changes when the
    /// tree already has a leaf `asLeaf`.
    [[nodiscard]] PaneNode inserting(const std::optional<Uuid>& session, const Uuid& asLeaf, const Uuid& nextTo,
                                     PaneAxis axis, bool before) const;
    /// None when nothing is left. A split with one child left gives way to that child.
    [[nodiscard]] std::optional<PaneNode> removing(const Uuid& leaf) const;
    /// Shares that do not fit the split (see `PaneFractions::fits`) are ignored; others are scaled to sum to 1.
    [[nodiscard]] PaneNode updatingFractions(const Uuid& ofSplit, const std::vector<double>& to) const;
    /// The same shape with fresh ids. A leaf keeps its content only when that is to be preserved.
    [[nodiscard]] PaneNode template_(const std::set<Uuid>& preserving = {}) const;

    /// The layouts of the menu, with fresh ids and empty leaves.
    static PaneNode single();
    static PaneNode twoColumns();
    static PaneNode twoRows();
    static PaneNode onePlusTwo();
    static PaneNode grid();

    JsonValue encode() const;
    /// None when the root is neither a leaf nor a split with a known axis and at least one child. Below the root
    /// damage is repaired: a child that cannot be read is an empty pane, a split of one child gives way to it, ids
    /// that are missing or used twice are replaced, unusable shares become equal ones.
    static std::optional<PaneNode> decode(const JsonValue& json);
};

}  // namespace orvane
