#pragma once

#include "Orvane/Agents/SessionController.h"
#include "OrvaneCore/Workspace/RestorableSession.h"

/// What of a session goes into the state file.
namespace orvane::SessionSaving {

/// Without its pane, which the session does not know. A conversation whose id is known is resumed by its command.
RestorableSession saved(const SessionController& session);

/// Whether the program was ended by a signal by which a system ends all programs at its shutdown or a logout.
bool wasEndedFromOutside(const SessionStatus& status);

}  // namespace orvane::SessionSaving
