#include "OrvaneShell/View/ViewHost.h"

#include <algorithm>
#include <boost/json.hpp>
#include <filesystem>
#include <utility>

#include "OrvaneCore/Support/Text.h"
#include "OrvaneShell/CommandLine/Selection.h"
#include "OrvaneShell/Host/ProjectFolder.h"
#include "Platform/BackgroundPool.h"

namespace orvane {

namespace {

constexpr std::string_view screenReaderPreference = "view.screenReader";

std::string_view reasonOf(WorkspaceView::End end) {
    switch (end) {
        case WorkspaceView::End::detached:
        case WorkspaceView::End::gone:
            return "detached";
        case WorkspaceView::End::replaced:
            return "replaced";
        case WorkspaceView::End::quit:
            return "quit";
    }
    std::unreachable();
}

/// The innermost project that has the folder.
const Project* projectAround(const WorkspaceModel& workspace, const std::string& folder) {
    const Project* best = nullptr;
    for (const Project& project : workspace.projects) {
        const std::string below = project.path.ends_with('/') ? project.path : project.path + '/';
        if (folder != project.path && !folder.starts_with(below)) continue;
        if (best == nullptr || project.path.size() > best->path.size()) best = &project;
    }
    return best;
}

Environment desktopOf(const JSONObject& given) {
    Environment desktop;
    for (const std::string_view name : LinkOpener::variables) {
        if (std::string value = given.string(name); !value.empty()) desktop.emplace(name, std::move(value));
    }
    return desktop;
}

struct FoundFolder {
    std::expected<std::string, std::string> path;
    bool isRepository = false;
};

FoundFolder lookAt(const L10n& l10n, const std::string& folder) {
    FoundFolder found{.path = usableFolder(l10n, folder)};
    std::error_code error;
    found.isRepository = found.path && std::filesystem::exists(*found.path + "/.git", error);
    return found;
}

}  // namespace

ViewHost::ViewHost(PreferencesStore& preferences, std::string home, std::function<void()> stopHost)
    : preferences_(preferences), home_(std::move(home)), stopHost_(std::move(stopHost)) {
    preferencesWatch_ = preferences_.onChange([this](std::string_view key) {
        if (key != "language" && !key.starts_with("view.")) return;
        for (const auto& [id, opened] : views_)
            opened.view->apply(ViewSettings::of(preferences_, opened.client));
    });
}

bool ViewHost::isPlain(const JSONObject& arguments) const {
    return arguments.boolean("screenReader") || preferences_.boolean(screenReaderPreference, false);
}

std::unique_ptr<WorkspaceView> ViewHost::make(HostContext& host, const JSONObject& arguments, TerminalDevice device,
                                              std::uint64_t id) {
    const ViewSettings::Client client{
        .language = arguments.raw<Language>("environmentLanguage").value_or(host.l10n.language),
        .isInsideTmux = arguments.boolean("insideTmux")};
    AppStore& store = host.store;
    views_[id].client = client;
    views_[id].links = std::make_unique<LinkOpener>(store.loop(), preferences_, desktopOf(arguments.object("desktop")));
    return std::make_unique<WorkspaceView>(
        WorkspaceView::Setup{.services = {.store = store,
                                          .tools = host.tools,
                                          .agents = host.agents,
                                          .history = host.history,
                                          .preferences = host.preferences},
                             .settings = ViewSettings::of(preferences_, client),
                             .features = OuterTerminal::of(arguments.string("term"), arguments.string("colorTerm"),
                                                           client.isInsideTmux, arguments.string("locale")),
                             .noColor = arguments.boolean("noColor"),
                             .isPlain = isPlain(arguments),
                             .onEnd = [this, id](WorkspaceView::End end) { forget(id, end); },
                             .stopHost = stopHost_,
                             .openProject =
                                 [this, &store, id](const std::string& typed) {
                                     const bool isInHome = typed == "~" || typed.starts_with("~/");
                                     const WorkspaceView* opened = view(id);
                                     if (opened == nullptr) return;
                                     showFolder(store, opened->context().l10n,
                                                isInHome ? home_ + typed.substr(1) : typed, Folder::asked, id);
                                 },
                             .openLink = [this, id](const std::string& address) { return openLink(id, address); }},
        std::move(device));
}

Outcome ViewHost::open(HostContext& host, const JSONObject& arguments) {
    const auto connection = host.connection.lock();
    if (!connection) return Streaming{};
    const auto descriptors = connection->takeDescriptors();
    if (descriptors.empty()) return Refusal{.message = host.l10n.text("error.viewNeedsTerminal")};
    std::optional<Uuid> project;
    if (const auto named = arguments.optionalString("project")) {
        const auto chosen = Selection::project(host, *named);
        if (!chosen) return chosen.error();
        project = *chosen;
    }
    auto device = TerminalDevice::open(descriptors.front());
    if (!device) return Refusal{.message = device.error().message()};
    replaceOthers();
    const std::uint64_t id = ++lastId_;
    Opened& opened = views_[id];
    opened.view = make(host, arguments, std::move(*device), id);
    opened.answer = host.answer;
    attend(*connection, id, isPlain(arguments));
    opened.view->start();
    if (project) {
        host.store.selectProject(*project);
    } else if (const std::string folder = arguments.string("folder"); !folder.empty()) {
        showFolder(host.store, host.l10n, folder, Folder::found, id);
    }
    return Streaming{};
}

bool ViewHost::openLink(std::uint64_t id, const std::string& address) {
    const auto tellFailure = [this, id, address] {
        WorkspaceView* opened = view(id);
        if (opened == nullptr) return;
        ViewContext& context = opened->context();
        context.actions.copy(address);
        context.say(context.l10n.text("view.link.failed", Text::oneLine(address)));
    };
    const auto found = views_.find(id);
    return found != views_.end() && found->second.links->open(address, tellFailure);
}

void ViewHost::attend(LineServer::Connection& connection, std::uint64_t id, bool isPlain) {
    const auto bound = [weak = std::weak_ptr(self_), id](auto act) {
        return [weak, id, act](const auto&... arguments) {
            const auto self = weak.lock();
            if (WorkspaceView* opened = self ? (*self)->view(id) : nullptr) act(*opened, arguments...);
        };
    };
    connection.beginStream();
    connection.onInput(bound([](WorkspaceView& opened, std::string_view line) {
        const JsonValue json = Json::parse(line).value_or(JsonValue());
        const JSONObject said(json);
        if (said.boolean("resize")) opened.noteSize();
        if (said.boolean("redraw")) opened.redraw();
        if (said.boolean("detach")) opened.end(WorkspaceView::End::detached);
    }));
    connection.onClose(
        bound([](WorkspaceView& opened) { opened.end(WorkspaceView::End::gone, WorkspaceView::Client::gone); }));
    connection.stream(isPlain ? R"({"attached":true,"plain":true})" : R"({"attached":true})");
}

void ViewHost::replaceOthers() {
    for (const auto& [id, opened] : views_)
        opened.view->end(WorkspaceView::End::replaced);
}

void ViewHost::endAll() {
    for (auto& [id, opened] : std::exchange(views_, {})) {
        opened.view->end(WorkspaceView::End::quit);
        opened.answer(JsonValue{{"reason", reasonOf(WorkspaceView::End::quit)}});
    }
}

void ViewHost::forget(std::uint64_t id, WorkspaceView::End end) {
    const auto found = views_.find(id);
    if (found == views_.end()) return;
    const auto answer = std::move(found->second.answer);
    views_.erase(found);
    answer(JsonValue{{"reason", reasonOf(end)}});
}

WorkspaceView* ViewHost::view(std::uint64_t id) const {
    const auto found = views_.find(id);
    return found == views_.end() ? nullptr : found->second.view.get();
}

void ViewHost::showFolder(AppStore& store, const L10n& l10n, const std::string& folder, Folder how, std::uint64_t id) {
    runInBackground(
        store.pool(), store.loop(), [l10n, folder] { return lookAt(l10n, folder); },
        [weak = std::weak_ptr(self_), weakStore = store.weak_from_this(), how, id](const FoundFolder& found) {
            const auto self = weak.lock();
            const auto known = weakStore.lock();
            WorkspaceView* opened = self ? (*self)->view(id) : nullptr;
            if (!known || opened == nullptr) return;
            const bool isAsked = how == Folder::asked;
            if (!found.path && isAsked) opened->context().say(found.path.error());
            if (!found.path) return;
            const WorkspaceModel& workspace = known->workspace();
            const Project* around = isAsked ? nullptr : projectAround(workspace, *found.path);
            if (around != nullptr) return known->selectProject(Uuid(around->id));
            if (!isAsked && !found.isRepository && !workspace.projects.empty()) return;
            const std::size_t before = workspace.projects.size();
            const Uuid project = known->addProject(*found.path);
            known->selectProject(project);
            if (workspace.projects.size() != before)
                known->createSession({.kind = SessionKind::shell, .project = project});
        });
}

}  // namespace orvane
