#pragma once

#include <string>
#include <vector>

#include "OrvaneCore/Workspace/Project.h"

/// Edits of the list of projects. Each gives a new list, equal to the old one when there is nothing to change.
namespace orvane::ProjectList {

struct Addition {
    std::vector<Project> projects;
    /// The project with the path, whether it is new or not.
    Uuid id;
};

/// Appends a project for a path, unless one has exactly this path. It is named after the folder and takes the
/// palette's next colour.
Addition adding(const std::string& path, std::vector<Project> projects, const Uuid& newID = Uuid::random());

/// A name that is blank but for white space changes nothing.
std::vector<Project> renaming(const Uuid& id, const std::string& name, std::vector<Project> projects);

/// Gives a project a colour of the palette in place of any custom one.
std::vector<Project> coloring(const Uuid& id, std::int64_t index, std::vector<Project> projects);

/// Gives a project a colour of its own; a text that names none changes nothing.
std::vector<Project> coloringCustom(const Uuid& id, const std::string& hex, std::vector<Project> projects);

/// Moves a project to the place of another: in front of it on the way up, behind it on the way down.
std::vector<Project> moving(const Uuid& id, const Uuid& before, std::vector<Project> projects);

std::vector<Project> removing(const Uuid& id, std::vector<Project> projects);

}  // namespace orvane::ProjectList
