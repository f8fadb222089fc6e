#include "OrvaneShell/CommandLine/Selection.h"

#include <algorithm>

#include "OrvaneCore/History/HistoryIds.h"
#include "OrvaneCore/Support/IdPrefix.h"
#include "OrvaneCore/Support/Text.h"

namespace orvane::Selection {

namespace {

Refusal refusal(const HostContext& host, IdPrefix::Error error, const std::string& text) {
    const char* key = error == IdPrefix::Error::none ? "error.nothingMatches" : "error.severalMatch";
    return {.message = host.l10n.text(key, text)};
}

}  // namespace

std::expected<Uuid, Refusal> among(const HostContext& host, const std::string& text, const std::vector<Uuid>& ids) {
    const auto found = IdPrefix::resolve(text, ids);
    if (!found) return std::unexpected(refusal(host, found.error(), text));
    return *found;
}

std::expected<Uuid, Refusal> project(const HostContext& host, const std::string& text) {
    const auto& projects = host.store.workspace().projects;
    std::vector<Uuid> ids;
    ids.reserve(projects.size());
    for (const Project& each : projects)
        ids.push_back(each.id);
    const auto byId = IdPrefix::resolve(text, ids);
    if (byId) return *byId;
    const auto byPath = std::ranges::find(projects, text, &Project::path);
    if (byPath != projects.end()) return byPath->id;
    std::vector<Uuid> named;
    for (const Project& each : projects) {
        if (Text::equalsIgnoringCase(each.name, text)) named.push_back(each.id);
    }
    if (named.size() == 1) return named.front();
    const bool isAmbiguous = named.size() > 1 || byId.error() == IdPrefix::Error::several;
    return std::unexpected(refusal(host, isAmbiguous ? IdPrefix::Error::several : IdPrefix::Error::none, text));
}

std::expected<SessionController*, Refusal> session(const HostContext& host, const std::string& text) {
    std::vector<Uuid> ids;
    for (const auto& each : host.store.sessions())
        ids.push_back(each->id());
    const auto id = among(host, text, ids);
    if (!id) return std::unexpected(id.error());
    return host.store.session(*id);
}

std::expected<HeadlessTerminal*, Refusal> terminal(const HostContext& host, const std::string& text) {
    const auto found = session(host, text);
    if (!found) return std::unexpected(found.error());
    if (HeadlessTerminal* terminal = (*found)->terminal()) return terminal;
    return std::unexpected(Refusal{.message = host.l10n.text("error.noTerminal", (*found)->title())});
}

namespace {

Refusal noAgent(const HostContext& host, const std::string& text) {
    std::string names;
    for (const AgentSpec& each : host.agents.specs())
        names += (names.empty() ? "" : ", ") + each.name;
    if (names.empty()) return {.message = host.l10n.text("error.noAgentYet", text)};
    return {.message = host.l10n.text("error.noAgent", text, names)};
}

}  // namespace

std::expected<AgentSpec, Refusal> agent(const HostContext& host, const std::string& text) {
    std::vector<Uuid> ids;
    std::vector<Uuid> named;
    for (const AgentSpec& each : host.agents.specs()) {
        ids.push_back(each.id);
        if (Text::equalsIgnoringCase(each.name, text)) named.push_back(each.id);
    }
    const auto found = named.size() == 1 ? named.front() : IdPrefix::resolve(text, ids);
    if (found) return *host.agents.spec(*found);
    // Who edits the file by hand may give two agents one name.
    const bool isAmbiguous = named.size() > 1 || found.error() == IdPrefix::Error::several;
    return std::unexpected(isAmbiguous ? refusal(host, IdPrefix::Error::several, text) : noAgent(host, text));
}

std::expected<Item, Refusal> item(const HostContext& host, const std::string& text) {
    std::vector<Item> items;
    for (const auto& session : host.store.sessions())
        items.push_back({Item::Kind::session, session->id()});
    const WorkspaceModel& workspace = host.store.workspace();
    for (const auto& [surface, tree] : workspace.surfaceTrees) {
        for (const Uuid& leaf : tree.leafIDs())
            items.push_back({Item::Kind::pane, leaf});
    }
    for (const auto& [projectID, metas] : workspace.surfaceMetas) {
        for (const SurfaceMeta& meta : metas)
            items.push_back({Item::Kind::surface, meta.id});
    }
    std::vector<Uuid> ids;
    ids.reserve(items.size());
    for (const Item& each : items)
        ids.push_back(each.id);
    const auto id = among(host, text, ids);
    if (!id) return std::unexpected(id.error());
    return *std::ranges::find(items, *id, &Item::id);
}

std::expected<SessionRecord, Refusal> conversation(const HostContext& host, const std::string& text) {
    const auto place = HistoryIds::resolve(text, host.history.records());
    if (!place) return std::unexpected(refusal(host, place.error(), text));
    return host.history.records()[*place];
}

}  // namespace orvane::Selection
