#include "OrvaneShell/CommandLine/Verbs/SessionStart.h"

#include "OrvaneShell/Texts/SessionTexts.h"

namespace orvane::SessionStart {

std::expected<SessionController*, Refusal> start(AppStore& store, const L10n& l10n,
                                                 const AppStore::SessionRequest& request) {
    SessionController* const session = store.createSession(request);
    if (session == nullptr)
        return std::unexpected(Refusal{.message = l10n.text("error.notStarted", rawValue(request.kind))});
    if (!session->launchFailure()) return session;
    const std::string why = SessionTexts::launchFailure(l10n, *session);
    store.closeSession(session->id());
    return std::unexpected(Refusal{.code = "notStarted", .message = why});
}

}  // namespace orvane::SessionStart
