#include "OrvaneCore/Workspace/Project.h"

#include <boost/json.hpp>
#include <utility>

#include "OrvaneCore/Support/JSONObject.h"
#include "OrvaneCore/Support/Paths.h"
#include "OrvaneCore/Workspace/ProjectPalette.h"

namespace orvane {

std::string Project::colorHex() const {
    return customColorHex.value_or(std::string(ProjectPalette::color(colorIndex).hex));
}

JsonValue Project::encode() const {
    boost::json::object object{{"id", id.upperText()}, {"name", name}, {"path", path}, {"colorIndex", colorIndex}};
    if (customColorHex) object["customColorHex"] = *customColorHex;
    return object;
}

std::optional<Project> Project::decode(const JsonValue& json) {
    const JSONObject object(json);
    std::string path = object.string("path");
    if (path.empty()) return std::nullopt;
    std::string name = object.string("name");
    if (name.empty()) name = lastPathComponent(path);
    return Project{.id = object.uuid("id").value_or(Uuid::random()),
                   .name = std::move(name),
                   .path = std::move(path),
                   .colorIndex = object.integer("colorIndex"),
                   .customColorHex = ProjectPalette::colorHex(object.string("customColorHex"))};
}

}  // namespace orvane
