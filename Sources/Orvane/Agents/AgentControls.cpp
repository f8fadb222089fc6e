#include "Orvane/Agents/AgentControls.h"

#include <algorithm>
#include <utility>

#include "Orvane/Agents/AgentConfigService.h"
#include "OrvaneCore/Agents/AgentCommand.h"
#include "OrvaneCore/Support/Text.h"
#include "Platform/Files.h"

namespace orvane {

namespace {

using namespace std::chrono_literals;

constexpr std::string_view endOfLine = "\x05";
constexpr std::string_view deleteBackward = "\x7f";
constexpr std::string_view nextPermissionMode = "\x1b[Z";
constexpr std::string_view bypassFlag = "--dangerously-skip-permissions";
constexpr std::string_view bypassMode = "bypassPermissions";
constexpr std::size_t catalogLimit = std::size_t{4} << 20;

/// A Return in one read with its word is taken for a part of a paste by some agents.
constexpr Duration returnDelay = 120ms;
constexpr Duration draftDelay = 800ms;
/// An agent that draws a list takes its digits once it is drawn.
constexpr Duration pickerDelay = 700ms;

}  // namespace

AgentControls::AgentControls(SessionKind kind, AgentTerminal& terminal, MainLoop& loop,
                             std::function<PromptObstacle()> obstacle, std::function<void()> blockPrompts)
    : kind_(kind),
      terminal_(terminal),
      loop_(loop),
      obstacle_(std::move(obstacle)),
      blockPrompts_(std::move(blockPrompts)) {}

void AgentControls::readDefaults(const std::string& home, const std::string& project, const std::string& command) {
    const AgentConfigService config(home);
    if (kind_ == SessionKind::claude) {
        AgentConfig::ClaudeDefaults defaults = config.claudeDefaults(project);
        settings_ = {.modelName = std::move(defaults.model),
                     .effortLevel = std::move(defaults.effort),
                     .permissionMode = std::move(defaults.permissionMode),
                     .sandboxMode = {}};
        if (auto mode = AgentCommand::optionValue(command, "--permission-mode")) settings_.permissionMode = mode;
        if (command.contains(bypassFlag)) settings_.permissionMode = bypassMode;
        if (settings_.permissionMode == bypassMode) bypass_ = PermissionCycle::Bypass::included;
    } else if (kind_ == SessionKind::codex) {
        AgentConfig::CodexDefaults defaults = config.codexDefaults();
        settings_ = {.modelName = std::move(defaults.model),
                     .effortLevel = std::move(defaults.reasoningEffort),
                     .permissionMode = {},
                     .sandboxMode = {}};
        if (defaults.sandbox) settings_.sandboxMode = rawValue(*defaults.sandbox);
        if (const auto catalog = readWholeFile(home + "/.codex/models_cache.json", catalogLimit)) {
            codexCatalog_ = CodexPicker::parse(*catalog);
        }
    }
    if (auto model = AgentCommand::optionValue(command, "--model")) settings_.modelName = std::move(model);
}

std::expected<void, ControlRefusal> AgentControls::setModel(const std::string& model) {
    std::expected<void, ControlRefusal> done = std::unexpected(ControlRefusal::unsupported);
    if (kind_ == SessionKind::claude) done = typeCommand("/model " + model);
    if (kind_ == SessionKind::gemini) done = typeCommand("/model set " + model);
    if (kind_ == SessionKind::codex) done = pickCodex(model, settings_.effortLevel.value_or("medium"));
    if (!done) return done;
    noteSwitchedModel(model);
    requestedModel_ = model;
    return done;
}

std::expected<void, ControlRefusal> AgentControls::setEffort(const std::string& effort) {
    std::expected<void, ControlRefusal> done = std::unexpected(ControlRefusal::unsupported);
    if (kind_ == SessionKind::claude) done = typeCommand("/effort " + effort);
    if (kind_ == SessionKind::codex && settings_.modelName) done = pickCodex(*settings_.modelName, effort);
    if (done) settings_.effortLevel = effort;
    return done;
}

std::expected<void, ControlRefusal> AgentControls::setPermissionMode(const std::string& mode) {
    if (kind_ != SessionKind::claude) return std::unexpected(ControlRefusal::unsupported);
    const std::vector<std::string> modes = PermissionCycle::modes(bypass_);
    if (std::ranges::find(modes, mode) == modes.end()) return std::unexpected(ControlRefusal::unknown);
    if (obstacle_() == PromptObstacle::dialog) return std::unexpected(ControlRefusal::busy);
    const int steps = PermissionCycle::steps(settings_.permissionMode.value_or("default"), mode, bypass_);
    std::string keys;
    for (int step = 0; step < steps; ++step)
        keys += nextPermissionMode;
    if (!keys.empty()) terminal_.write(keys);
    settings_.permissionMode = mode;
    return {};
}

void AgentControls::noteSwitchedModel(const std::string& model) {
    if (!hasJustSwitched()) requestedModel_.reset();
    settings_.modelName = model;
    modelSwitchedAt_ = loop_.now();
}

bool AgentControls::hasJustSwitched() const {
    return modelSwitchedAt_ && loop_.now() - *modelSwitchedAt_ < switchProtection;
}

void AgentControls::noteModel(const std::string& model) {
    if (!hasJustSwitched()) settings_.modelName = model;
}

void AgentControls::stop() {
    commandTimer_.reset();
    draftTimer_.reset();
    pickerTimer_.reset();
}

std::expected<void, ControlRefusal> AgentControls::typeCommand(const std::string& command) {
    const PromptObstacle obstacle = obstacle_();
    if (obstacle == PromptObstacle::working || obstacle == PromptObstacle::dialog) {
        return std::unexpected(ControlRefusal::busy);
    }
    const std::string draft = terminal_.reading().draft.value_or("");
    if (draft.contains('\n')) return std::unexpected(ControlRefusal::draftBusy);
    blockPrompts_();
    std::string keys;
    if (!draft.empty()) {
        keys += endOfLine;
        for (std::size_t count = Text::characterCount(draft); count > 0; --count)
            keys += deleteBackward;
        retype(draft);
    }
    terminal_.write(keys + command);
    commandTimer_ = loop_.after(returnDelay, [this] { terminal_.write("\r"); });
    return {};
}

/// Once the command has gone, what was in its place comes back.
void AgentControls::retype(std::string draft) {
    draftTimer_ = loop_.after(draftDelay, [this, text = std::move(draft)] {
        terminal_.write(text);
        blockPrompts_();
    });
}

std::expected<void, ControlRefusal> AgentControls::pickCodex(const std::string& model, const std::string& effort) {
    std::optional<std::vector<int>> digits;
    if (codexCatalog_) digits = CodexPicker::digits(model, effort, *codexCatalog_);
    if (!digits) return typeCommand("/model " + model);
    const auto typed = typeCommand("/model");
    if (typed) typeDigits(*std::move(digits));
    return typed;
}

/// Each digit goes to the list that is drawn by then.
void AgentControls::typeDigits(std::vector<int> digits) {
    if (digits.empty()) return;
    blockPrompts_();
    pickerTimer_ = loop_.after(pickerDelay, [this, rest = std::move(digits)]() mutable {
        terminal_.write(std::to_string(rest.front()));
        rest.erase(rest.begin());
        typeDigits(std::move(rest));
    });
}

}  // namespace orvane
