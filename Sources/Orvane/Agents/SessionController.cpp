#include "Orvane/Agents/SessionController.h"

#include <algorithm>
#include <csignal>
#include <utility>

#include "Platform/ProcessGroup.h"

namespace orvane {

namespace {

/// In the place of a wait status, which is never negative.
constexpr int neverStarted = -1;

}  // namespace

SessionController::SessionController(Identity identity, Appearance appearance)
    : identity_(std::move(identity)), appearance_(std::move(appearance)) {}

void SessionController::launch(SessionLauncher& launcher) {
    const auto weak = weak_from_this();
    auto launched = launcher.launch(*this, {.onActivity =
                                                [weak] {
                                                    if (const auto self = weak.lock()) self->noteActivity();
                                                },
                                            .onExit =
                                                [weak](int waitStatus) {
                                                    if (const auto self = weak.lock()) self->noteExit(waitStatus);
                                                }});
    if (!launched) {
        launchFailure_ = std::move(launched.error());
        return noteExit(neverStarted);
    }
    process_ = *std::move(launched);
    forcedTranscriptID_ = process_->forcedTranscriptID();
}

void SessionController::setTransport(std::unique_ptr<ChatTransport> transport) {
    transport_ = std::move(transport);
}

std::string SessionController::title() const {
    if (!appearance_.userTitle.empty()) return appearance_.userTitle;
    if (identity_.agentSpec) return identity_.agentSpec->name;
    return std::string(rawValue(identity_.kind));
}

pid_t SessionController::processId() const {
    return process_ == nullptr || hasExited_ ? 0 : process_->processId();
}

void SessionController::raiseAttention() {
    needsAttention_ = true;
    if (callbacks_.onAttention) callbacks_.onAttention();
    changed();
}

void SessionController::clearAttention() {
    if (!std::exchange(needsAttention_, false)) return;
    changed();
}

void SessionController::noteFocus() {
    if (callbacks_.onFocus) callbacks_.onFocus();
}

void SessionController::setStatus(const SessionStatus& status) {
    if (status == status_) return;
    status_ = status;
    changed();
}

void SessionController::noteActivity() {
    if (!isAgent(identity_.kind) && !hasExited_) setStatus({SessionStatus::Working{}});
}

void SessionController::noteExit(int waitStatus) {
    hasExited_ = true;
    setStatus(waitStatus == 0 ? SessionStatus{SessionStatus::Done{}}
                              : SessionStatus{SessionStatus::Failed{waitStatus}});
}

void SessionController::changed() {
    const SessionStatus before = std::exchange(publishedStatus_, status_);
    if (callbacks_.onChange) callbacks_.onChange(before);
}

void SessionController::terminate() {
    if (std::exchange(terminationAsked_, true)) return;
    if (transport_ != nullptr) return transport_->stop();
    if (process_ == nullptr || hasExited_) return;
    collectProcessGroups();
    for (const pid_t group : terminatingProcessGroups_)
        ProcessGroup::signal(group, SIGTERM);
    process_->terminate();
}

/// Read while the program still runs: afterwards its terminal can no longer say who is in the foreground.
void SessionController::collectProcessGroups() {
    for (const pid_t group : {ProcessGroup::of(process_->processId()), process_->foregroundProcessGroup()}) {
        if (group >= 2) terminatingProcessGroups_.insert(group);
    }
}

bool SessionController::isStillTerminating() const {
    if (transport_ != nullptr) return transport_->isAlive();
    return std::ranges::any_of(terminatingProcessGroups_, ProcessGroup::isAlive);
}

void SessionController::kill() {
    if (transport_ != nullptr) return transport_->kill();
    if (process_ == nullptr) return;
    if (!hasExited_) collectProcessGroups();
    for (const pid_t group : terminatingProcessGroups_)
        ProcessGroup::signal(group, SIGKILL);
}

}  // namespace orvane
