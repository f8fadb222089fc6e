#include "OrvaneCore/Workspace/ProjectList.h"

#include <algorithm>
#include <utility>

#include "OrvaneCore/Support/Paths.h"
#include "OrvaneCore/Support/Text.h"
#include "OrvaneCore/Workspace/ProjectPalette.h"

namespace orvane::ProjectList {

Addition adding(const std::string& path, std::vector<Project> projects, const Uuid& newID) {
    const auto existing = std::ranges::find(projects, path, &Project::path);
    if (existing != projects.end()) {
        const Uuid id = existing->id;
        return {.projects = std::move(projects), .id = id};
    }
    projects.push_back({.id = newID,
                        .name = lastPathComponent(path),
                        .path = path,
                        .colorIndex = static_cast<std::int64_t>(projects.size())});
    return {.projects = std::move(projects), .id = newID};
}

std::vector<Project> renaming(const Uuid& id, const std::string& name, std::vector<Project> projects) {
    const auto project = std::ranges::find(projects, id, &Project::id);
    const std::string_view given = Text::trimmed(name);
    if (project != projects.end() && !given.empty()) project->name = given;
    return projects;
}

std::vector<Project> coloring(const Uuid& id, std::int64_t index, std::vector<Project> projects) {
    const auto project = std::ranges::find(projects, id, &Project::id);
    if (project == projects.end()) return projects;
    project->colorIndex = index;
    project->customColorHex.reset();
    return projects;
}

std::vector<Project> coloringCustom(const Uuid& id, const std::string& hex, std::vector<Project> projects) {
    const auto project = std::ranges::find(projects, id, &Project::id);
    const std::optional<std::string> color = ProjectPalette::colorHex(hex);
    if (project != projects.end() && color) project->customColorHex = color;
    return projects;
}

std::vector<Project> moving(const Uuid& id, const Uuid& before, std::vector<Project> projects) {
    const auto moved = std::ranges::find(projects, id, &Project::id);
    const auto target = std::ranges::find(projects, before, &Project::id);
    if (moved == projects.end() || target == projects.end()) return projects;
    if (moved < target) {
        std::rotate(moved, moved + 1, target + 1);
    } else {
        std::rotate(target, moved, moved + 1);
    }
    return projects;
}

std::vector<Project> removing(const Uuid& id, std::vector<Project> projects) {
    std::erase_if(projects, [&](const Project& project) { return project.id == id; });
    return projects;
}

}  // namespace orvane::ProjectList
