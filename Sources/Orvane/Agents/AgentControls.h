#pragma once

#include <deque>
#include <expected>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "Orvane/Agents/AgentTerminal.h"
#include "Orvane/Agents/PromptTarget.h"
#include "OrvaneCore/Agents/PermissionCycle.h"
#include "OrvaneCore/Agents/SessionKind.h"
#include "OrvaneCore/Agents/Signals/CodexPicker.h"

namespace orvane {

/// Why a setting of an agent was not changed.
enum class ControlRefusal {
    unsupported,  ///< this kind of agent has no such setting
    unknown,      ///< it has no such value
    draftBusy,    ///< somebody has typed or pasted something that could not be typed again
    busy,         ///< it works or asks something
};

/// Changes model, effort and permission mode of an agent in a terminal, as a user would: by typing its commands. What
/// somebody has typed in the composer is taken away and typed again behind the last command.
class AgentControls {
 public:
    /// What a session runs with, as far as it is known.
    struct Settings {
        std::optional<std::string> modelName;
        std::optional<std::string> effortLevel;
        std::optional<std::string> permissionMode;
        std::optional<std::string> sandboxMode;
    };

    /// For so long the transcript, which lags, cannot take a switch back.
    static constexpr Duration switchProtection = std::chrono::seconds(10);

    /// The terminal and the loop must outlive it. `obstacle` tells what keeps us from typing, `blockPrompts` keeps
    /// prompts away for a second, and tells that what comes up meanwhile is ours.
    AgentControls(SessionKind kind, AgentTerminal& terminal, MainLoop& loop, std::function<PromptObstacle()> obstacle,
                  std::function<void()> blockPrompts);

    const Settings& settings() const { return settings_; }
    /// By its name, or by the alias that it was last switched with ("opus").
    bool runsModel(const std::string& model) const { return settings_.modelName == model || requestedModel_ == model; }
    /// What the agent's own settings and its command line say it starts with.
    void readDefaults(const std::string& home, const std::string& project, const std::string& command);

    std::expected<void, ControlRefusal> setModel(const std::string& model);
    std::expected<void, ControlRefusal> setEffort(const std::string& effort);
    std::expected<void, ControlRefusal> setPermissionMode(const std::string& mode);

    /// The agent says that its user has switched to this model.
    void noteSwitchedModel(const std::string& model);
    /// What the transcript tells, which lags: it does not take back what was switched a moment ago.
    void noteTranscript(const std::optional<std::string>& model, const std::optional<std::string>& permissionMode);
    /// Whether something of a command, or the draft that it displaced, is still to be typed.
    bool isTyping() const { return !steps_.empty() || !displacedDraft_.empty(); }
    void stop();

 private:
    enum class Place { anywhere, composer, dialog };
    struct Step {
        Duration wait;
        Place place = Place::anywhere;
        std::string keys;  ///< none: only the wait
    };

    bool hasJust(const std::optional<Instant>& switchedAt) const;
    std::expected<void, ControlRefusal> typeCommand(const std::string& command, const std::vector<int>& digits = {});
    std::expected<void, ControlRefusal> pickCodex(const std::string& model, const std::string& effort);
    std::expected<std::string, ControlRefusal> displaceDraft();
    void schedule();
    void typeNext();
    void typeDraft();
    void lookAgain();
    void dropDigits();

    SessionKind kind_;
    AgentTerminal& terminal_;
    MainLoop& loop_;
    std::function<PromptObstacle()> obstacle_;
    std::function<void()> blockPrompts_;
    Settings settings_;
    std::optional<CodexPicker::Catalog> codexCatalog_;
    PermissionCycle::Bypass bypass_ = PermissionCycle::Bypass::excluded;
    std::optional<Instant> modelSwitchedAt_;
    std::optional<Instant> permissionSwitchedAt_;
    /// What the transcript told last: told again, it is no news.
    std::optional<std::string> toldModel_;
    std::optional<std::string> toldMode_;
    std::optional<std::string> requestedModel_;
    std::deque<Step> steps_;
    std::string displacedDraft_;
    int looks_ = 0;  ///< at a screen that is not yet as the next step needs it
    Registration timer_;
};

}  // namespace orvane
