#include "Orvane/Agents/AgentLaunchSupport.h"

#include <utility>

#include "Orvane/Agents/HookFeedFile.h"
#include "Orvane/Agents/SessionController.h"
#include "Orvane/Agents/TerminalAgent.h"
#include "OrvaneCore/Agents/Signals/ClaudeHookFeed.h"

namespace orvane {

LaunchAdditions AgentLaunchSupport::additions(const SessionController& session) {
    LaunchAdditions additions;
    const SessionController::Identity& identity = session.identity();
    TerminalAgent* agent = session.agent();
    if (agent == nullptr || temporaryFolder_.empty()) return additions;
    if (!LaunchPlan::takesHookFeed(identity.kind, identity.command)) return additions;
    auto file = HookFeedFile::create(temporaryFolder_ + "/orvane-hooks", session.id().upperText() + ".events");
    if (!file) return additions;
    using ClaudeHookFeed::StatusLine;
    const StatusLine statusLine = config_.hasStatusLine() ? StatusLine::hide : StatusLine::keep;
    additions.hookFeed =
        LaunchHookFeed{.eventsPath = file->path(),
                       .settingsJson = ClaudeHookFeed::withFurtherHooks(ClaudeHookFeed::settingsJson(statusLine))};
    agent->watch().useHooks(*std::move(file));
    return additions;
}

}  // namespace orvane
