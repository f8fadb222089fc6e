#include "Orvane/Agents/AgentControls.h"

#include <algorithm>
#include <utility>

#include "Orvane/Agents/AgentConfigService.h"
#include "OrvaneCore/Agents/AgentCommand.h"
#include "OrvaneCore/Agents/ModelName.h"
#include "OrvaneCore/Support/Regex.h"
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
/// Behind the Return of a command before.
constexpr Duration commandDelay = 600ms;
constexpr Duration draftDelay = 700ms;
/// An agent that draws a list takes its digits once it is drawn.
constexpr Duration pickerDelay = 700ms;
constexpr Duration lookDelay = 200ms;
constexpr int maximumLooks = 25;  ///< 5 s

/// "[Pasted text #1 +20 lines]", "[Image #1]": typed again it would be these words alone.
bool standsForMore(const std::string& draft) {
    static const Regex mark = Regex::compile(R"(\[(?:pasted|image)\b[^\]]*\])", {.ignoresCase = true}).value();
    return mark.matches(draft);
}

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
    const std::string current = settings_.permissionMode.value_or("default");
    const int steps = PermissionCycle::steps(current, mode, bypass_);
    // From a mode outside of the cycle nobody knows the way.
    if (steps == 0 && current != mode) return std::unexpected(ControlRefusal::unknown);
    std::string keys;
    for (int step = 0; step < steps; ++step)
        keys += nextPermissionMode;
    if (!keys.empty()) terminal_.write(keys);
    settings_.permissionMode = mode;
    permissionSwitchedAt_ = loop_.now();
    return {};
}

void AgentControls::noteSwitchedModel(const std::string& model) {
    if (!hasJust(modelSwitchedAt_)) requestedModel_.reset();
    settings_.modelName = model;
    modelSwitchedAt_ = loop_.now();
}

void AgentControls::noteTranscript(const std::optional<std::string>& model,
                                   const std::optional<std::string>& permissionMode) {
    if (model && model != toldModel_ && !hasJust(modelSwitchedAt_)) {
        toldModel_ = model;
        if (requestedModel_ && !ModelName::isMeant(*model, *requestedModel_)) requestedModel_.reset();
        // Transcripts name a model without the mark of its large window.
        const std::string before = settings_.modelName.value_or("");
        const bool isLarge = before.ends_with(ModelName::largeWindowSuffix) && ModelName::isMeant(*model, before);
        settings_.modelName = isLarge ? *model + std::string(ModelName::largeWindowSuffix) : *model;
    }
    if (permissionMode && permissionMode != toldMode_ && !hasJust(permissionSwitchedAt_)) {
        toldMode_ = settings_.permissionMode = permissionMode;
        if (permissionMode == bypassMode) bypass_ = PermissionCycle::Bypass::included;
    }
}

bool AgentControls::hasJust(const std::optional<Instant>& switchedAt) const {
    return switchedAt && loop_.now() - *switchedAt < switchProtection;
}

void AgentControls::stop() {
    timer_.reset();
    steps_.clear();
    displacedDraft_.clear();
}

std::expected<void, ControlRefusal> AgentControls::typeCommand(const std::string& command,
                                                               const std::vector<int>& digits) {
    const bool isFirst = steps_.empty();
    if (isTyping()) {
        steps_.push_back({.wait = commandDelay, .place = Place::composer, .keys = command});
    } else {
        const auto keys = displaceDraft();
        if (!keys) return std::unexpected(keys.error());
        blockPrompts_();
        terminal_.write(*keys + command);
    }
    steps_.push_back({.wait = returnDelay, .keys = "\r"});
    for (const int digit : digits)
        steps_.push_back({.wait = pickerDelay, .place = Place::dialog, .keys = std::to_string(digit)});
    if (!digits.empty()) steps_.push_back({.wait = pickerDelay, .keys = {}});
    if (isFirst) schedule();
    return {};
}

/// The keys that take away what stands in the composer.
std::expected<std::string, ControlRefusal> AgentControls::displaceDraft() {
    const PromptObstacle obstacle = obstacle_();
    if (obstacle == PromptObstacle::working || obstacle == PromptObstacle::dialog) {
        return std::unexpected(ControlRefusal::busy);
    }
    std::string draft = terminal_.reading().draft.value_or("");
    if (draft.contains('\n') || standsForMore(draft)) return std::unexpected(ControlRefusal::draftBusy);
    if (draft.empty()) return std::string();
    std::string keys(endOfLine);
    for (std::size_t count = Text::characterCount(draft); count > 0; --count)
        keys += deleteBackward;
    displacedDraft_ = std::move(draft);
    return keys;
}

void AgentControls::schedule() {
    looks_ = 0;
    if (!steps_.empty()) {
        timer_ = loop_.after(steps_.front().wait, [this] { typeNext(); });
    } else if (!displacedDraft_.empty()) {
        timer_ = loop_.after(draftDelay, [this] { typeDraft(); });
    }
}

void AgentControls::typeNext() {
    const Place place = steps_.front().place;
    const bool isDialogUp = terminal_.reading().dialogUp;
    if (place == Place::composer && isDialogUp) return lookAgain();
    if (place == Place::dialog && !isDialogUp) {
        blockPrompts_();
        if (++looks_ < maximumLooks) return lookAgain();
        dropDigits();
        return schedule();
    }
    const Step step = std::move(steps_.front());
    steps_.pop_front();
    blockPrompts_();
    if (!step.keys.empty()) terminal_.write(step.keys);
    schedule();
}

void AgentControls::lookAgain() {
    timer_ = loop_.after(lookDelay, [this] { steps_.empty() ? typeDraft() : typeNext(); });
}

/// In the composer they would be a draft.
void AgentControls::dropDigits() {
    while (!steps_.empty() && steps_.front().place == Place::dialog)
        steps_.pop_front();
}

/// What was in the place of the commands comes back, however long a question keeps it waiting.
void AgentControls::typeDraft() {
    if (terminal_.reading().dialogUp) return lookAgain();
    blockPrompts_();
    terminal_.write(std::exchange(displacedDraft_, {}));
}

std::expected<void, ControlRefusal> AgentControls::pickCodex(const std::string& model, const std::string& effort) {
    std::optional<std::vector<int>> digits;
    if (codexCatalog_) digits = CodexPicker::digits(model, effort, *codexCatalog_);
    return digits ? typeCommand("/model", *digits) : typeCommand("/model " + model);
}

}  // namespace orvane
