#pragma once

#include <expected>

#include "Orvane/Workspace/AppStore.h"
#include "OrvaneShell/CommandLine/Verb.h"

namespace orvane::SessionStart {

/// A session whose program runs; one whose program cannot be started is gone again, and the refusal says why.
std::expected<SessionController*, Refusal> start(AppStore& store, const L10n& l10n,
                                                 const AppStore::SessionRequest& request);

}  // namespace orvane::SessionStart
