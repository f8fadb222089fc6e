#include "OrvaneCore/Agents/Signals/ClaudeHookFeed.h"

#include <fmt/format.h>

#include "OrvaneCore/Support/Text.h"

namespace orvane::ClaudeHookFeed {

namespace {

struct Hook {
    std::string_view name;
    ClaudeHookEvent event;
    std::string_view matcher;
};

constexpr std::array hooks = {
    Hook{"UserPromptSubmit", ClaudeHookEvent::prompt, ""},
    Hook{"PreToolUse", ClaudeHookEvent::tool, ""},
    Hook{"PostToolUse", ClaudeHookEvent::tool, ""},
    Hook{"Notification", ClaudeHookEvent::notify, ""},
    Hook{"Stop", ClaudeHookEvent::stop, ""},
    Hook{"SessionStart", ClaudeHookEvent::clear, "clear"},
};

constexpr std::array furtherHooks = {
    Hook{"PermissionRequest", ClaudeHookEvent::notify, ""},
    Hook{"PostToolUseFailure", ClaudeHookEvent::tool, ""},
    Hook{"StopFailure", ClaudeHookEvent::stop, ""},
};

std::string json(const Hook& hook) {
    const std::string matcher = hook.matcher.empty() ? "" : fmt::format(R"("matcher":"{}",)", hook.matcher);
    const std::string command = fmt::format(R"(echo {} >> \"${}\")", rawValue(hook.event), environmentKey);
    return fmt::format(R"("{}":[{{{}"hooks":[{{"type":"command","command":"{}"}}]}}])", hook.name, matcher, command);
}

std::optional<AgentPhase> phaseAfter(ClaudeHookEvent event, std::optional<AgentPhase> phase) {
    switch (event) {
        case ClaudeHookEvent::prompt:
        case ClaudeHookEvent::tool:
            return AgentPhase::running;
        case ClaudeHookEvent::notify:
            return phase == AgentPhase::running ? AgentPhase::awaitingApproval : phase;
        case ClaudeHookEvent::stop:
            return AgentPhase::turnEnded;
        case ClaudeHookEvent::clear:
            return std::nullopt;
    }
    return phase;
}

}  // namespace

std::string settingsJson(StatusLine statusLine) {
    std::string members;
    for (const Hook& hook : hooks)
        members += (members.empty() ? "" : ",") + json(hook);
    return fmt::format(R"({{{}"hooks":{{{}}}}})",
                       statusLine == StatusLine::hide ? R"("statusLine":{"type":"command","command":":"},)" : "",
                       members);
}

std::string withFurtherHooks(std::string settings) {
    constexpr std::string_view end = "}}";
    if (!settings.ends_with(end)) return settings;
    settings.resize(settings.size() - end.size());
    for (const Hook& hook : furtherHooks)
        settings += "," + json(hook);
    return settings.append(end);
}

std::vector<ClaudeHookEvent> events(std::string_view text) {
    std::vector<ClaudeHookEvent> events;
    while (!text.empty()) {
        const std::size_t end = text.find('\n');
        if (const auto event = fromRawValue<ClaudeHookEvent>(Text::trimmed(text.substr(0, end))))
            events.push_back(*event);
        text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
    }
    return events;
}

std::optional<AgentPhase> phase(std::span<const ClaudeHookEvent> after, std::optional<AgentPhase> from) {
    for (const ClaudeHookEvent event : after)
        from = phaseAfter(event, from);
    return from;
}

}  // namespace orvane::ClaudeHookFeed
