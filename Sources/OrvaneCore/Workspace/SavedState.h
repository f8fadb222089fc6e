#pragma once

#include <boost/json/object.hpp>
#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "OrvaneCore/Support/Json.h"
#include "OrvaneCore/Support/Uuid.h"
#include "OrvaneCore/Workspace/PaneTemplate.h"
#include "OrvaneCore/Workspace/Project.h"
#include "OrvaneCore/Workspace/RestorableSession.h"
#include "OrvaneCore/Workspace/SavedSurface.h"

namespace orvane {

/// What the state file keeps of the workspace between runs.
struct SavedState {
    std::vector<Project> projects;
    std::vector<PaneTemplate> templates;
    /// One pane tree a project, for builds that know no tabs; see `SurfaceMigration`.
    std::map<Uuid, PaneNode> layouts;
    /// Launches by the raw value of the session kind or the key of a custom agent.
    std::map<std::string, std::int64_t> usageCounts;
    /// By the raw value of the session kind.
    std::map<std::string, std::vector<std::string>> knownSlashCommands;
    std::optional<Uuid> selectedProjectID;
    std::set<Uuid> collapsedProjects;
    /// The sessions that ran, by project, in order.
    std::map<Uuid, std::vector<RestorableSession>> restorable;
    /// Tab strips by project. Absent in the oldest files, which know one tree a project.
    std::optional<std::map<Uuid, std::vector<SavedSurface>>> surfaces;
    /// The surface shown, by project.
    std::map<Uuid, Uuid> activeSurfaces;
    /// Top-level members that are not read here, written back as they stood, so that a file that went through this
    /// build still has what another one put into it.
    boost::json::object others;

    bool operator==(const SavedState&) const = default;

    JsonValue encode() const;

    /// None when this is no state file: the root is no object or has no array of projects. An entry that cannot be
    /// read is skipped; projects, templates and surfaces whose id stands before them already get a fresh one, and a
    /// project that stands there twice in full is read once.
    static std::optional<SavedState> decode(const JsonValue& json);

    /// The state to start from: every project has a tab, every kind that owns a pane tree has one, every project's
    /// active surface and every focused pane exists, and nothing speaks of a project that is not there. Without
    /// `surfaces` the strips are made of `layouts`. `defaultTitle` names the workspaces that this makes.
    [[nodiscard]] SavedState completed(const std::string& defaultTitle) const;
};

}  // namespace orvane
