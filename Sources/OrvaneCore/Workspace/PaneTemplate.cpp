#include "OrvaneCore/Workspace/PaneTemplate.h"

#include <boost/json.hpp>
#include <utility>

#include "OrvaneCore/Support/JSONObject.h"

namespace orvane {

JsonValue PaneTemplate::encode() const {
    return boost::json::object{{"id", id.upperText()}, {"name", name}, {"node", node.encode()}};
}

std::optional<PaneTemplate> PaneTemplate::decode(const JsonValue& json) {
    const JSONObject object(json);
    const JsonValue* tree = object.find("node");
    std::optional<PaneNode> node = tree == nullptr ? std::nullopt : PaneNode::decode(*tree);
    if (!node) return std::nullopt;
    return PaneTemplate{
        .id = object.uuid("id").value_or(Uuid::random()), .name = object.string("name"), .node = *std::move(node)};
}

}  // namespace orvane
