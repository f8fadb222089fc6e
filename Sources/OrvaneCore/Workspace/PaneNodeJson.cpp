#include <boost/json.hpp>
#include <utility>

#include "OrvaneCore/Support/JSONObject.h"
#include "OrvaneCore/Workspace/PaneFractions.h"
#include "OrvaneCore/Workspace/PaneNode.h"
#include "OrvaneCore/Workspace/UniqueIDs.h"

namespace orvane {

namespace {

JsonValue encodePart(const PaneNode::Leaf& leaf) {
    boost::json::object object{{"id", leaf.id.upperText()}};
    if (leaf.contentID) object["sessionID"] = leaf.contentID->upperText();
    return boost::json::object{{"leaf", std::move(object)}};
}

JsonValue encodePart(const PaneNode::Split& split) {
    JsonArray children;
    children.reserve(split.children.size());
    for (const PaneNode& child : split.children)
        children.push_back(child.encode());
    boost::json::object object{{"id", split.id.upperText()},
                               {"axis", rawValue(split.axis)},
                               {"children", std::move(children)},
                               {"fractions", JsonArray(split.fractions.begin(), split.fractions.end())}};
    return boost::json::object{{"split", std::move(object)}};
}

/// Reads one tree. It knows the ids given so far, so that none is given twice: an edit finds a pane by its id.
class Decoder {
 public:
    std::optional<PaneNode> node(const JsonValue& json, std::size_t depth = 0) {
        const JSONObject object(json);
        const JsonValue* leaf = object.find("leaf");
        if (leaf != nullptr && !leaf->is_null()) {
            return leaf->is_object() ? std::optional(decodeLeaf(JSONObject(*leaf))) : std::nullopt;
        }
        return decodeSplit(object.object("split"), depth);
    }

 private:
    PaneNode decodeLeaf(const JSONObject& object) {
        return {PaneNode::Leaf{.id = uniqueID(object), .contentID = object.uuid("sessionID")}};
    }

    std::optional<PaneNode> decodeSplit(const JSONObject& object, std::size_t depth) {
        const std::optional<PaneAxis> axis = object.raw<PaneAxis>("axis");
        const JsonArray& children = object.array("children");
        if (!axis || children.empty() || depth >= PaneNode::maximumDepth) return std::nullopt;
        if (children.size() == 1) return node(children.front(), depth + 1);
        PaneNode::Split split{.id = uniqueID(object), .axis = *axis};
        split.children.reserve(children.size());
        for (const JsonValue& child : children) {
            split.children.push_back(node(child, depth + 1).value_or(PaneNode::single()));
        }
        split.fractions = fractions(object, children.size());
        return PaneNode{std::move(split)};
    }

    /// An entry that is no number reads as no share at all, which makes the whole row unusable.
    static std::vector<double> fractions(const JSONObject& object, std::size_t count) {
        std::vector<double> shares;
        for (const JsonValue& share : object.array("fractions")) {
            shares.push_back(share.is_number() ? share.to_number<double>() : 0);
        }
        return PaneFractions::fits(shares, count) ? PaneFractions::normalised(std::move(shares))
                                                  : PaneFractions::equal(count);
    }

    Uuid uniqueID(const JSONObject& object) { return ids_.claim(object.uuid("id").value_or(Uuid())); }

    UniqueIDs ids_;
};

}  // namespace

JsonValue PaneNode::encode() const {
    return std::visit([](const auto& part) { return encodePart(part); }, value);
}

std::optional<PaneNode> PaneNode::decode(const JsonValue& json) {
    return Decoder().node(json);
}

}  // namespace orvane
