#pragma once

#include <string>

#include "Orvane/Agents/SessionController.h"
#include "OrvaneCore/Support/JSONObject.h"
#include "OrvaneCore/Support/L10n.h"

namespace orvane {

/// A session as `list --json` shows it.
JsonValue sessionJson(const SessionController& session);

/// The same with what its agent's transcript tells: how full its context is, and where it is.
JsonValue sessionAndContextJson(const SessionController& session);

/// The status of such a session for a person: "failed (7) !".
std::string statusText(const L10n& l10n, const JSONObject& session);

}  // namespace orvane
