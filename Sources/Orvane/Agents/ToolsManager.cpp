#include "Orvane/Agents/ToolsManager.h"

#include <algorithm>
#include <filesystem>
#include <system_error>
#include <utility>

#include "OrvaneCore/Agents/ToolAuth.h"
#include "OrvaneCore/Agents/ToolPathRescue.h"
#include "Platform/Folders.h"

namespace orvane {

namespace {

/// What files tell of the tools.
struct Findings {
    std::vector<std::string> toolFolders;
    std::map<std::string, AuthState> authStates;
};

bool isThere(const std::string& path) {
    std::error_code error;
    return std::filesystem::exists(path, error);
}

Findings lookAtFiles(const Environment& environment, const EnvironmentEntries& loginEnvironment) {
    Findings findings{.toolFolders = ShellSetup::findToolFolders(environment), .authStates = {}};
    const ToolAuth::Evidence evidence{
        .home = Folders::home(environment),
        .fileExists = isThere,
        .isVariableSet =
            [&](const std::string& name) {
                return !variable(environment, name).empty() ||
                       !EnvironmentList::value(loginEnvironment, name).value_or("").empty();
            },
    };
    for (const AgentTool& tool : agentTools)
        findings.authStates[std::string(tool.id)] = ToolAuth::state(tool.id, evidence);
    return findings;
}

}  // namespace

ToolsManager::ToolsManager(const Services& services) : services_(services) {
    for (const AgentTool& tool : agentTools) {
        states_[std::string(tool.id)].value = ToolState::Checking{};
        authStates_[std::string(tool.id)] = AuthState::checking;
    }
}

void ToolsManager::scheduleChange() {
    if (std::exchange(changePending_, true)) return;
    services_.loop.post([weak = weak_from_this()] {
        const auto self = weak.lock();
        if (!self) return;
        self->changePending_ = false;
        self->changed.emit();
    });
}

void ToolsManager::survey(void (ToolsManager::*then)()) {
    runInBackground(
        services_.pool, services_.loop,
        [environment = services_.shell.environment,
         login = services_.loginCapture.entries().value_or(EnvironmentEntries())] {
            return lookAtFiles(environment, login);
        },
        [weak = weak_from_this(), then](Findings findings) {
            const auto self = weak.lock();
            if (!self) return;
            self->services_.shell.toolFolders = std::move(findings.toolFolders);
            self->authStates_ = std::move(findings.authStates);
            self->scheduleChange();
            (*self.*then)();
        });
}

void ToolsManager::refresh(Done done) {
    if (done) waitingForRefresh_.push_back(std::move(done));
    if (std::exchange(isRefreshing_, true)) return;
    for (const AgentTool& tool : agentTools) {
        if (!isInstalling(tool)) states_[std::string(tool.id)].value = ToolState::Checking{};
        authStates_[std::string(tool.id)] = AuthState::checking;
    }
    scheduleChange();
    survey(&ToolsManager::detect);
}

void ToolsManager::detect() {
    auto question = LoginShellRun::start(
        services_.loop, services_.shell, ToolsReport::script(services_.shell.toolFolders),
        {.time = LoginShellRun::answerLimit},
        {.onOutput = {}, .onEnd = [this](const LoginShellRun::Result& result) {
             const bool hasEnded = std::holds_alternative<ExitStatus::Exited>(result.status.outcome);
             answer_ = hasEnded ? Answer::whole : Answer::cut;
             takeAnswer(result.output);
         }});
    if (question) {
        question_ = *std::move(question);
    } else {
        answer_ = Answer::none;
        takeAnswer({});
    }
}

void ToolsManager::takeAnswer(std::string_view output) {
    const auto self = shared_from_this();  // whoever is told may let it go
    const ToolsReport report = ToolsReport::parse(output);
    npmAvailable_ = report.npmAvailable;
    if (!npmAvailable_ && answer_ == Answer::whole) answer_ = Answer::cut;
    for (const AgentTool& tool : agentTools) {
        if (!isInstalling(tool) && !newerThanRefresh_.contains(&tool)) take(tool, report);
    }
    newerThanRefresh_.clear();
    isRefreshing_ = false;
    scheduleChange();
    for (const Done& done : std::exchange(waitingForRefresh_, {}))
        done();
}

void ToolsManager::take(const AgentTool& tool, const ToolsReport& report) {
    const std::string id(tool.id);
    states_[id] = report.states.at(id);
    binaryPaths_.erase(id);
    if (const auto path = report.binaryPaths.find(id); path != report.binaryPaths.end()) binaryPaths_.insert(*path);
    scheduleChange();
}

bool ToolsManager::isInstalling(const AgentTool& tool) const {
    return std::holds_alternative<ToolState::Installing>(states_.at(std::string(tool.id)).value);
}

void ToolsManager::install(const AgentTool& tool, Order order, Installed done) {
    if (install_ && install_->tool != &tool) {
        const Failure failure{.reason = Failure::Reason::otherRunning,
                              .detail = std::string(install_->tool->displayName)};
        services_.loop.post([done = std::move(done), failure] { done(std::unexpected(failure)); });
        return;
    }
    if (install_) {
        install_->waiting.push_back(std::move(done));
        return;
    }
    install_.emplace(Install{.tool = &tool, .order = order, .waiting = {std::move(done)}, .lines = {}});
    log_.beginRun();
    const bool isKnown = order == Order::install || states_.at(std::string(tool.id)).isInstalled();
    if (npmAvailable_ == true && isKnown && !isRefreshing_) return runInstaller();
    refresh([this] { beginIfPossible(); });
}

void ToolsManager::beginIfPossible() {
    const auto refuse = [this](Failure::Reason reason) {
        end("onboarding.logFailed", std::unexpected(Failure{.reason = reason}));
    };
    if (npmAvailable_ == false) return refuse(Failure::Reason::npmMissing);
    if (!npmAvailable_ && answer_ == Answer::cut) return refuse(Failure::Reason::shellSilent);
    const bool isThere = states_.at(std::string(install_->tool->id)).isInstalled();
    if (install_->order == Order::update && !isThere && npmAvailable_) return refuse(Failure::Reason::notInstalled);
    runInstaller();
}

void ToolsManager::runInstaller() {
    ToolState& state = states_[std::string(install_->tool->id)];
    const ToolState before = std::exchange(state, {.value = ToolState::Installing{}});
    scheduleChange();
    auto run = LoginShellRun::start(
        services_.loop, services_.shell,
        ToolPathRescue::shellPrelude(services_.shell.toolFolders) + ToolsReport::installScript(*install_->tool), {},
        {.onOutput = [this](std::string_view bytes) { takeOutput(install_->lines.append(bytes)); },
         .onEnd = [this](const LoginShellRun::Result& result) { installerEnded(result.status); }});
    if (run) {
        install_->run = *std::move(run);
        return;
    }
    state = before;
    end("onboarding.logError",
        std::unexpected(Failure{.reason = Failure::Reason::notStarted, .detail = run.error().message()}));
}

void ToolsManager::takeOutput(const std::vector<std::string>& lines) {
    for (const std::string& line : lines) {
        log_.append(line);
        installPrinted.emit(line);
    }
    if (!lines.empty()) scheduleChange();
}

void ToolsManager::installerEnded(const ExitStatus& status) {
    if (auto last = install_->lines.finish()) takeOutput({*std::move(last)});
    install_->commandSucceeded = status.isSuccess();
    survey(&ToolsManager::lookAtInstalled);
}

/// Also after a failure: what was there before may have gone.
void ToolsManager::lookAtInstalled() {
    auto question = LoginShellRun::start(
        services_.loop, services_.shell, ToolsReport::script(*install_->tool, services_.shell.toolFolders),
        {.time = LoginShellRun::answerLimit}, {.onOutput = {}, .onEnd = [this](const LoginShellRun::Result& result) {
                                                   settle(ToolsReport::parse(result.output));
                                               }});
    if (!question) return settle(ToolsReport::parse({}));
    install_->run = *std::move(question);
}

void ToolsManager::settle(const ToolsReport& report) {
    const AgentTool& tool = *install_->tool;
    take(tool, report);
    if (isRefreshing_) newerThanRefresh_.insert(&tool);
    const bool isThere = states_.at(std::string(tool.id)).isInstalled();
    if (install_->commandSucceeded && isThere) return end("onboarding.logDone", {});
    const auto reason = install_->commandSucceeded ? Failure::Reason::notFound : Failure::Reason::failed;
    end("onboarding.logFailed", std::unexpected(Failure{.reason = reason}));
}

void ToolsManager::end(std::string_view textKey, const std::expected<void, Failure>& result) {
    log_.append(services_.l10n.text(textKey, result ? std::string() : result.error().detail));
    scheduleChange();
    services_.loop.post([waiting = std::move(install_->waiting), result] {
        for (const Installed& each : waiting)
            each(result);
    });
    install_.reset();
}

}  // namespace orvane
