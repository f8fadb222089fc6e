#include <algorithm>
#include <filesystem>

#include "OrvaneCore/Support/ShellText.h"
#include "OrvaneShell/View/Commands/ViewCommands.h"
#include "OrvaneShell/View/Overlays/AnswerOverlay.h"
#include "OrvaneShell/View/Overlays/ConversationsOverlay.h"
#include "OrvaneShell/View/Overlays/ListOverlay.h"
#include "OrvaneShell/View/Overlays/PromptOverlay.h"
#include "OrvaneShell/View/Painting/ViewLook.h"
#include "OrvaneShell/View/SessionMark.h"
#include "OrvaneShell/View/SessionQuestion.h"
#include "OrvaneShell/View/SidebarRows.h"
#include "OrvaneShell/View/TracePanel.h"

namespace orvane::SessionCommands {

namespace {

using Item = ListOverlay::Item;

/// What installs a tool, in a pane where its log is seen: the program itself knows how.
std::string installLine(const AgentTool& tool) {
    std::error_code error;
    const std::string self = std::filesystem::read_symlink("/proc/self/exe", error).string();
    return shellQuoted(self) + " tools install " + std::string(tool.id);
}

std::string stateDetail(const ViewContext& view, const ToolState& state) {
    const auto* installed = std::get_if<ToolState::Installed>(&state.value);
    if (installed != nullptr) return installed->version.value_or("");
    return view.l10n.text("tools.state." + std::string(state.name()));
}

Item toolItem(const ViewContext& view, const AgentTool& tool, const ToolState& state) {
    const auto kind = fromRawValue<SessionKind>(tool.id).value_or(SessionKind::shell);
    const bool isMissing = std::holds_alternative<ToolState::Missing>(state.value);
    if (!isMissing) {
        return {.label = std::string(tool.displayName),
                .detail = stateDetail(view, state),
                .choose = [kind](ViewContext& with) { with.launch({.kind = kind}); }};
    }
    return {.label = view.l10n.text("view.launch.install", tool.displayName),
            .detail = stateDetail(view, state),
            .choose =
                [&tool](ViewContext& with) { with.launch({.kind = SessionKind::shell, .command = installLine(tool)}); },
            .look = ViewLook::dim};
}

void launchCommand(ViewContext& view) {
    view.open(std::make_unique<PromptOverlay>(
        view.l10n.text("view.launch.commandTitle"), "", [](ViewContext& with, const std::string& command) {
            if (command.empty()) return with.l10n.text("view.launch.noCommand");
            with.launch({.kind = SessionKind::service, .command = command, .title = command});
            return std::string();
        }));
}

/// The installed agents first, then what always works, then what can be installed.
std::vector<Item> launchItems(const ViewContext& view) {
    std::vector<Item> items;
    std::vector<Item> missing;
    for (const AgentTool& tool : agentTools) {
        const auto found = view.tools.states().find(std::string(tool.id));
        const ToolState state = found == view.tools.states().end() ? ToolState() : found->second;
        const bool isMissing = std::holds_alternative<ToolState::Missing>(state.value);
        (isMissing ? missing : items).push_back(toolItem(view, tool, state));
    }
    for (const AgentSpec& spec : view.agents.specs()) {
        items.push_back({.label = spec.name, .detail = spec.command, .choose = [id = spec.id](ViewContext& with) {
                             with.launch({.kind = SessionKind::custom, .customAgent = id});
                         }});
    }
    items.push_back({.label = view.l10n.text("view.launch.shell"),
                     .choose = [](ViewContext& with) { with.launch({.kind = SessionKind::shell}); }});
    items.push_back({.label = view.l10n.text("view.launch.command"), .choose = launchCommand});
    std::ranges::move(missing, std::back_inserter(items));
    return items;
}

/// "website · 2 Workspace": many sessions are called alike.
std::string placeOf(const ViewContext& view, const Project& project, const SessionController& session) {
    const auto pane = view.store.workspace().paneShowing(session.id());
    const auto tabs = view.store.workspace().visibleSurfaces(project.id);
    const auto tab = pane ? std::ranges::find(tabs, pane->surface, &SurfaceMeta::id) : tabs.end();
    if (tab == tabs.end()) return project.name;
    return project.name + " · " + std::to_string(tab - tabs.begin() + 1) + " " + TabCommands::titleOf(view, *tab);
}

/// Of the sessions that are so the one that has been for the longest time, over all projects, but for the one that has
/// the focus.
SessionController* longest(const ViewContext& view, bool (*isSo)(const SessionController&)) {
    const SessionController* focused = view.focusedSession();
    SessionController* first = nullptr;
    for (const auto& session : view.store.sessions()) {
        if (!isSo(*session) || session.get() == focused) continue;
        if (first == nullptr || session->evidence().since < first->evidence().since) first = session.get();
    }
    return first;
}

}  // namespace

std::vector<Item> destinations(const ViewContext& view) {
    std::vector<Item> items;
    for (const SidebarRow& row : SidebarRow::of(view.store, view.now(), SidebarRow::Folded::shown)) {
        const Project* project = view.store.workspace().project(row.project);
        if (project == nullptr || row.comingBack) continue;
        const SessionController* session = row.session ? view.store.session(*row.session) : nullptr;
        if (session == nullptr) {
            items.push_back({.label = project->name,
                             .detail = project->path,
                             .choose = [id = project->id](ViewContext& with) { with.store.selectProject(id); },
                             .look = ViewLook::bold});
            continue;
        }
        const SessionMark mark = SessionMark::of(*session);
        items.push_back({.label = "  " + std::string(mark.glyph) + " " + session->title(),
                         .detail = placeOf(view, *project, *session),
                         .choose = [id = session->id()](ViewContext& with) { with.store.selectSession(id); }});
    }
    return items;
}

void launch(ViewContext& view) {
    if (!view.project()) return ProjectCommands::open(view);
    // What is installed may have changed since the last look; the list says so while it is found out.
    view.tools.refresh();
    auto list = std::make_unique<ListOverlay>(view, view.l10n.text("view.launch.title"), launchItems);
    list->onGone = [](ViewContext& with) { with.store.interface().overlay.reset(); };
    view.open(std::move(list));
    view.store.interface().overlay = Overlay::launcher;
}

void goTo(ViewContext& view) {
    view.open(std::make_unique<ListOverlay>(view, view.l10n.text("view.goTo.title"), destinations));
}

void answer(ViewContext& view) {
    const SessionController* session = view.focusedSession();
    if (session == nullptr || !SessionQuestion::isAsked(*session)) session = longest(view, SessionQuestion::isAsked);
    if (session == nullptr || !SessionQuestion::isAsked(*session)) return view.say(view.l10n.text("view.nobodyAsks"));
    view.open(std::make_unique<AnswerOverlay>(session->id(), AnswerOverlay::Scope::one));
}

void waiting(ViewContext& view) {
    const SessionController* focused = view.focusedSession();
    const bool isFocused = focused != nullptr && SessionQuestion::isAsked(*focused);
    const SessionController* first = longest(view, SessionQuestion::isAsked);
    if (first == nullptr && !isFocused) return view.say(view.l10n.text("view.nobodyAsks"));
    view.open(
        std::make_unique<AnswerOverlay>(first == nullptr ? focused->id() : first->id(), AnswerOverlay::Scope::all));
}

void nextCall(ViewContext& view) {
    const SessionController* session = longest(view, SidebarRow::needsUser);
    if (session == nullptr) session = longest(view, [](const auto& each) { return each.hasUnseenEnd(); });
    if (session == nullptr) return view.say(view.l10n.text("view.nobodyAsks"));
    view.zoomedLeaf.reset();
    view.store.selectSession(session->id());
}

void conversations(ViewContext& view) {
    view.open(std::make_unique<ConversationsOverlay>(view));
}

void trace(ViewContext& view) {
    const SessionController* session = view.focusedSession();
    if (session == nullptr || !isAgent(session->identity().kind)) return view.say(view.l10n.text("view.trace.noAgent"));
    const Uuid id = session->id();
    if (view.tracePanels.erase(id) == 0) view.tracePanels.emplace(id, std::make_unique<TracePanel>());
}

void rename(ViewContext& view) {
    const SessionController* session = view.focusedSession();
    if (session == nullptr) return;
    view.open(std::make_unique<PromptOverlay>(view.l10n.text("view.rename.session"), session->title(),
                                              [id = session->id()](ViewContext& with, const std::string& title) {
                                                  with.store.renameSession(id, title);
                                                  return std::string();
                                              }));
}

void restart(ViewContext& view, SessionController& ended) {
    const auto leaf = view.focusedLeaf();
    AppStore::SessionRequest again{.kind = ended.identity().kind,
                                   .command = ended.identity().command,
                                   .title = ended.appearance().userTitle,
                                   .workingDirectory = ended.identity().projectPath,
                                   .targetLeaf = leaf};
    if (ended.identity().agentSpec) again.customAgent = ended.identity().agentSpec->id;
    view.store.closeSession(ended.id());
    view.launch(std::move(again));
}

}  // namespace orvane::SessionCommands
