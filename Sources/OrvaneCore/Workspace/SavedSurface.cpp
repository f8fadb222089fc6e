#include "OrvaneCore/Workspace/SavedSurface.h"

#include <boost/json.hpp>
#include <utility>

#include "OrvaneCore/Support/JSONObject.h"

namespace orvane {

SavedSurface SavedSurface::workspace(const std::string& title) {
    return {.meta = SurfaceMeta::workspace(title), .node = PaneNode::single(), .focusedPane = std::nullopt};
}

JsonValue SavedSurface::encode() const {
    boost::json::object object{{"meta", meta.encode()}};
    if (node) object["node"] = node->encode();
    if (focusedPane) object["focusedPane"] = focusedPane->upperText();
    return object;
}

std::optional<SavedSurface> SavedSurface::decode(const JsonValue& json) {
    const JSONObject object(json);
    const JsonValue* metaJson = object.find("meta");
    std::optional<SurfaceMeta> meta = metaJson == nullptr ? std::nullopt : SurfaceMeta::decode(*metaJson);
    if (!meta) return std::nullopt;
    const JsonValue* tree = object.find("node");
    return SavedSurface{.meta = *std::move(meta),
                        .node = tree == nullptr ? std::nullopt : PaneNode::decode(*tree),
                        .focusedPane = object.uuid("focusedPane")};
}

}  // namespace orvane
