#include <algorithm>

#include "OrvaneShell/View/Commands/ViewCommands.h"
#include "OrvaneShell/View/Overlays/ConfirmOverlay.h"
#include "OrvaneShell/View/Overlays/HelpOverlay.h"

namespace orvane::FrameCommands {

void toggleSidebar(ViewContext& view) {
    if (view.cols < ViewLayout::colsForSidebar) {
        view.showsNarrowSidebar = !view.showsNarrowSidebar;
    } else {
        view.store.setRailHidden(!view.store.interface().shellCollapse.railHidden);
    }
}

void lock(ViewContext& view) {
    view.isLocked = !view.isLocked;
    view.close();
}

void repeat(ViewContext& view) {
    view.actions.repeat();
}

void detach(ViewContext& view) {
    view.actions.detach();
}

void quit(ViewContext& view) {
    // The view asks by itself when the store says that somebody has to.
    if (view.store.requestQuit(AppStore::Window::visible) == AppStore::QuitReply::now) view.actions.stopHost();
}

void help(ViewContext& view) {
    view.open(std::make_unique<HelpOverlay>());
}

void askToQuit(ViewContext& view) {
    const auto active = view.store.activeSessions();
    const auto working = std::ranges::count_if(active, [](const SessionController* session) {
        return isAgent(session->identity().kind) &&
               std::holds_alternative<SessionStatus::Working>(session->status().value);
    });
    std::string body = view.l10n.plural("quit.subtitle", static_cast<long long>(active.size()));
    if (working > 0) body += view.l10n.plural("quit.working", working);
    view.open(std::make_unique<ConfirmOverlay>(
        ConfirmOverlay::Question{.title = view.l10n.text("quit.title"),
                                 .body = std::move(body),
                                 .confirm = view.l10n.text("quit.confirm"),
                                 .onConfirm =
                                     [](ViewContext& with) {
                                         with.store.answerQuit();
                                         with.actions.stopHost();
                                     },
                                 .onCancel = [](ViewContext& with) { with.store.answerQuit(); },
                                 .isMeant = [](ViewContext& with) { return with.store.interface().confirmingQuit; }}));
}

void askToClose(ViewContext& view, const Uuid& session) {
    const SessionController* closing = view.store.session(session);
    if (closing == nullptr) return;
    const auto forget = [](ViewContext& with) { with.store.interface().sessionPendingClose.reset(); };
    view.open(std::make_unique<ConfirmOverlay>(ConfirmOverlay::Question{
        .title = view.l10n.text("view.closeSession.title", closing->title()),
        .body = view.l10n.text("view.closeSession.body"),
        .confirm = view.l10n.text("view.closeSession.confirm"),
        .onConfirm =
            [session, forget](ViewContext& with) {
                forget(with);
                const auto pane = with.store.workspace().paneShowing(session);
                with.zoomedLeaf.reset();
                if (pane) with.store.closePane(pane->leaf);
                if (with.store.session(session) != nullptr) with.store.closeSession(session);
            },
        .onCancel = forget,
        .isMeant = [session](ViewContext& with) { return with.store.interface().sessionPendingClose == session; }}));
}

}  // namespace orvane::FrameCommands
