#include "OrvaneCore/Agents/LaunchPlan.h"

#include <algorithm>
#include <array>
#include <utility>

#include "OrvaneCore/Agents/Signals/ClaudeHookFeed.h"
#include "OrvaneCore/Agents/ToolPathRescue.h"
#include "OrvaneCore/Support/Paths.h"
#include "OrvaneCore/Support/ShellText.h"
#include "OrvaneCore/Support/Text.h"

namespace orvane {

namespace {

/// By these an agent knows that another one started it, and whose session it is.
constexpr std::array<std::string_view, 6> identityVariables = {
    "CLAUDECODE",           "CLAUDE_CODE_CHILD_SESSION", "CLAUDE_CODE_SKIP_PROMPT_HISTORY", "CLAUDE_CODE_ENTRYPOINT",
    "CLAUDE_CODE_SSE_PORT", "CLAUDE_CODE_SESSION_ID",
};

/// With one of these Claude goes on with a transcript or was told its id.
constexpr std::array<std::string_view, 6> transcriptFlags = {"--resume",       "--continue", "--session-id",
                                                             "--fork-session", " -r",        " -c"};

void dropIdentity(EnvironmentEntries& environment) {
    std::erase_if(environment, [](const std::string& entry) {
        return std::ranges::find(identityVariables, EnvironmentList::name(entry)) != identityVariables.end();
    });
}

std::string chosenCommand(SessionKind kind, const std::optional<std::string>& given, const std::string& shell) {
    if (given && !Text::trimmed(*given).empty()) return *given;
    if (hasAgentTranscript(kind)) return std::string(rawValue(kind));
    return "exec " + lastPathComponent(shell) + " -l";
}

bool startsTranscript(std::string_view command) {
    return command.starts_with("claude") &&
           std::ranges::none_of(transcriptFlags, [&](std::string_view flag) { return command.contains(flag); });
}

class Composer {
 public:
    explicit Composer(const LaunchRequest& request) : request_(request) {}

    LaunchPlan compose() {
        plan_.executable = request_.shell;
        prepareEnvironment();
        if (request_.kind == SessionKind::shell) {
            plan_.arguments = {"-l"};
        } else {
            composeCommand();
        }
        finishEnvironment();
        return std::move(plan_);
    }

 private:
    void prepareEnvironment() {
        plan_.environment = request_.baseEnvironment;
        EnvironmentList::set(plan_.environment, "LANG", request_.locale);
        if (!request_.sessionID.empty()) {
            EnvironmentList::set(plan_.environment, LaunchPlan::sessionVariable, request_.sessionID);
        }
        if (!isAgent(request_.kind)) return;
        for (const std::string& entry : request_.browserVariables)
            plan_.environment.push_back(entry);
    }

    void composeCommand() {
        std::string command = chosenCommand(request_.kind, request_.command, request_.shell);
        if (request_.kind == SessionKind::claude) appendClaudeFlags(command);
        if (hasAgentTranscript(request_.kind)) command += request_.mcpInjection;
        if (request_.loginEnvironment) {
            plan_.arguments = {"-c", std::move(command)};
        } else {
            plan_.arguments = LaunchShell::loginArguments(ToolPathRescue::shellPrelude(request_.toolFolders) + command);
        }
    }

    void appendClaudeFlags(std::string& command) {
        if (startsTranscript(command)) {
            plan_.forcedTranscriptID = request_.freshTranscriptID.lowerText();
            command += " --session-id " + *plan_.forcedTranscriptID;
        }
        if (request_.hookFeed && LaunchPlan::takesHookFeed(request_.kind, request_.command)) {
            EnvironmentList::set(plan_.environment, ClaudeHookFeed::environmentKey, request_.hookFeed->eventsPath);
            command += " --settings " + shellQuoted(request_.hookFeed->settingsJson);
        }
        command += request_.browserPrompt;
    }

    void finishEnvironment() {
        dropIdentity(plan_.environment);
        if (request_.kind == SessionKind::claude) {
            EnvironmentList::set(plan_.environment, "CLAUDE_CODE_HIDE_SETTINGS_HINT", "1");
        }
        if (!request_.loginEnvironment) return;
        plan_.environment = EnvironmentList::merging(*request_.loginEnvironment, std::move(plan_.environment));
        // A host that an agent started passes that agent's identity to the login shell as well.
        dropIdentity(plan_.environment);
    }

    const LaunchRequest& request_;
    LaunchPlan plan_;
};

}  // namespace

std::expected<LaunchPlan, LaunchPlan::Error> LaunchPlan::compose(const LaunchRequest& request) {
    LaunchPlan plan = Composer(request).compose();
    const std::string& script = plan.arguments.back();
    if (script.contains('\0')) return std::unexpected(Error::commandHasNul);
    if (script.size() > maximumCommandSize) return std::unexpected(Error::commandTooLong);
    return plan;
}

bool LaunchPlan::takesHookFeed(SessionKind kind, const std::optional<std::string>& command) {
    if (kind != SessionKind::claude) return false;
    const std::string chosen = chosenCommand(kind, command, {});
    return chosen == "claude" || chosen.starts_with("claude ") || chosen.starts_with("claude\t");
}

}  // namespace orvane
