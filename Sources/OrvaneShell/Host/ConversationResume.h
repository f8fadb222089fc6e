#pragma once

#include <expected>
#include <functional>

#include "Orvane/Workspace/AppStore.h"
#include "OrvaneCore/History/SessionRecord.h"
#include "OrvaneShell/CommandLine/Verb.h"

/// Takes a past conversation up again, whoever asks for it. Main thread only.
namespace orvane::ConversationResume {

/// The running session that writes the conversation's transcript; null when there is none.
SessionController* sessionIn(const AppStore& store, const SessionRecord& record);

using Resumed = std::expected<SessionController*, Refusal>;

/// Starts a session in the project's folder that goes on with the conversation; a folder that is in no project becomes
/// one. Refused while a session is in the conversation: of two programs that write one transcript each loses what the
/// other one wrote. `done` may run inside the call, and not at all once the store is gone.
void start(AppStore& store, const L10n& l10n, const SessionRecord& record, std::function<void(const Resumed&)> done);

}  // namespace orvane::ConversationResume
