#pragma once

#include <cstddef>
#include <expected>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "OrvaneCore/Agents/EnvironmentList.h"
#include "OrvaneCore/Agents/LaunchShell.h"
#include "OrvaneCore/Agents/SessionKind.h"
#include "OrvaneCore/Support/Uuid.h"

namespace orvane {

/// How Claude tells us of its turns: its hooks, set up by the settings, write to the file.
struct LaunchHookFeed {
    std::string eventsPath;
    std::string settingsJson;
};

/// What a launch of a session in a terminal depends on.
struct LaunchRequest {
    SessionKind kind = SessionKind::shell;
    /// A shell command line; none or blank means that of the kind. A `shell` has none.
    std::optional<std::string> command;
    /// Absolute path, from `LaunchShell::choose`.
    std::string shell = std::string(LaunchShell::preferred);
    /// What the terminal tells its child, such as TERM.
    EnvironmentEntries baseEnvironment;
    std::string locale = "en_US.UTF-8";
    /// What `LaunchPlan::sessionVariable` tells the programs of the session; empty leaves it as it is.
    std::string sessionID;
    /// From `LoginEnvironment`; none while it is not known.
    std::optional<EnvironmentEntries> loginEnvironment;
    /// Where the agents' programs are (`ToolPathRescue::hosting`), for when it is not known.
    std::vector<std::string> toolFolders;
    /// How an agent reaches the browser.
    EnvironmentEntries browserVariables;
    /// `LaunchPlan::browserPrompt`, or empty when Claude is not to know of the browser.
    std::string browserPrompt;
    /// Flags for the kind, with a leading blank, or empty.
    std::string mcpInjection;
    /// Used when `LaunchPlan::takesHookFeed` says so.
    std::optional<LaunchHookFeed> hookFeed;
    /// The id of the transcript if this starts a new one.
    Uuid freshTranscriptID;
};

/// The process that runs a session in a terminal.
struct LaunchPlan {
    enum class Error {
        commandHasNul,   ///< the command would end there
        commandTooLong,  ///< with what was added it has more than `maximumCommandSize` bytes
    };

    /// The longest argument that Linux takes (MAX_ARG_STRLEN) without its terminating NUL.
    static constexpr std::size_t maximumCommandSize = 128 * 1024 - 1;

    /// By this variable a program knows that it runs in a session of ours, and in which.
    static constexpr std::string_view sessionVariable = "ORVANE_SESSION";

    /// Tells Claude of the browser; a flag with a leading blank.
    static constexpr std::string_view browserPrompt =
        " --append-system-prompt 'Orvane embeds a real browser you can drive with curl (open pages, text snapshot of "
        "the DOM with element refs, click, fill forms, screenshots, console). Before any web UI work or verification, "
        "fetch the API doc: curl -s \"$ORVANE_BROWSER_URL/help\" -H \"X-Orvane-Token: $ORVANE_BROWSER_TOKEN\"'";

    std::string executable;
    /// Without the zeroth.
    std::vector<std::string> arguments;
    EnvironmentEntries environment;
    /// The id of the transcript when we chose it, so that its file is known without a search.
    std::optional<std::string> forcedTranscriptID;

    bool operator==(const LaunchPlan&) const = default;

    static std::expected<LaunchPlan, Error> compose(const LaunchRequest& request);

    /// Whether a file for hook events is to be made: the command is Claude's own, with or without flags.
    static bool takesHookFeed(SessionKind kind, const std::optional<std::string>& command);
};

}  // namespace orvane
