#include "OrvaneShell/View/ViewContext.h"

#include <algorithm>
#include <utility>

#include "Orvane/Support/WallClock.h"
#include "OrvaneCore/Support/Text.h"
#include "OrvaneShell/Texts/SessionTexts.h"
#include "OrvaneShell/View/TracePanel.h"

namespace orvane {

namespace {

constexpr Duration noticeTime = std::chrono::seconds(5);

}  // namespace

ViewContext::ViewContext(const Services& services, Actions does)
    : store(services.store),
      tools(services.tools),
      agents(services.agents),
      history(services.history),
      preferences(services.preferences),
      actions(std::move(does)) {}

ViewContext::~ViewContext() = default;

void ViewContext::open(std::unique_ptr<ViewOverlay> next) {
    close();
    overlay = std::move(next);
    actions.requestFrame();
}

void ViewContext::close() {
    if (const auto gone = std::exchange(overlay, nullptr)) gone->dismissed(*this);
    actions.requestFrame();
}

void ViewContext::say(std::string line) {
    notice_ = std::move(line);
    noticeTimer_ = store.loop().after(noticeTime, [this] {
        notice_.clear();
        actions.requestFrame();
    });
    actions.requestFrame();
}

std::function<void(std::string)> ViewContext::sayLater() const {
    return [weak = std::weak_ptr(self_)](std::string line) {
        if (const auto self = weak.lock()) (*self)->say(std::move(line));
    };
}

void ViewContext::unsay(const std::string& line) {
    if (notice_ != line) return;
    notice_.clear();
    noticeTimer_.reset();
    actions.requestFrame();
}

std::string ViewContext::keysOf(std::string_view name) const {
    const ViewCommand* command = ViewCommand::named(name);
    const auto keys = command == nullptr ? std::vector<KeySequence>() : bindings.keysOf(*command);
    return keys.empty() ? std::string() : keys.front().shown(leader);
}

std::optional<Uuid> ViewContext::surface() const {
    const auto shown = project();
    const auto& active = store.workspace().activeSurfaceID;
    const auto found = shown ? active.find(*shown) : active.end();
    return found == active.end() ? std::nullopt : std::optional(found->second);
}

std::optional<Uuid> ViewContext::focusedLeaf() const {
    const WorkspaceModel& workspace = store.workspace();
    const auto shown = surface();
    if (!shown) return std::nullopt;
    const auto tree = workspace.surfaceTrees.find(*shown);
    if (tree == workspace.surfaceTrees.end()) return std::nullopt;
    const auto focused = workspace.focusedPanes.find(*shown);
    const auto leaves = tree->second.leafIDs();
    if (focused != workspace.focusedPanes.end() && tree->second.contains(focused->second)) return focused->second;
    return leaves.front();
}

SessionController* ViewContext::focusedSession() const {
    const auto leaf = focusedLeaf();
    const auto pane = leaf ? store.workspace().paneOfLeaf(*leaf) : std::nullopt;
    if (!pane) return nullptr;
    const auto content = store.workspace().surfaceTrees.at(pane->surface).contentID(*leaf);
    return content ? store.session(*content) : nullptr;
}

SessionController* ViewContext::sessionIn(const ViewLayout::Pane& pane) const {
    return pane.content ? store.session(*pane.content) : nullptr;
}

TracePanel* ViewContext::tracePanel(const Uuid& session) const {
    const auto found = tracePanels.find(session);
    return found == tracePanels.end() ? nullptr : found->second.get();
}

std::optional<std::string> ViewContext::comingBack(const Uuid& leaf) const {
    if (!project()) return std::nullopt;
    const auto sessions = store.comingBack(*project());
    const auto found = std::ranges::find(sessions, leaf, &AppStore::ComingBack::leaf);
    return found == sessions.end() ? std::nullopt : std::optional(Text::oneLine(found->title));
}

bool ViewContext::showsSidebar() const {
    if (cols < ViewLayout::colsForSidebar) return showsNarrowSidebar;
    return !store.interface().shellCollapse.railHidden;
}

ViewLayout ViewContext::wholeLayout() const {
    return ViewLayout::of(store.workspace(),
                          {.cols = cols, .rows = rows, .showsSidebar = showsSidebar(), .zoomedLeaf = std::nullopt});
}

Date ViewContext::now() const {
    return dateOf(store.loop().wallTime());
}

void ViewContext::launch(AppStore::SessionRequest request) {
    const auto shown = project();
    if (!shown) return say(l10n.text("error.noProject"));
    request.project = *shown;
    if (const auto leaf = focusedLeaf(); leaf && focusedSession() == nullptr) request.targetLeaf = leaf;
    zoomedLeaf.reset();
    SessionController* session = store.createSession(request);
    if (session == nullptr) return say(l10n.text("error.notStarted", rawValue(request.kind)));
    if (!session->launchFailure()) return;
    say(SessionTexts::launchFailure(l10n, *session));
    store.closeSession(session->id());
}

void ViewContext::focus(const Uuid& leaf) {
    if (zoomedLeaf && *zoomedLeaf != leaf) zoomedLeaf.reset();
    store.focusPane(leaf);
    if (SessionController* session = focusedSession()) session->clearAttention();
}

}  // namespace orvane
