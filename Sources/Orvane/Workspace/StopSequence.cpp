#include "Orvane/Workspace/StopSequence.h"

#include <algorithm>
#include <utility>

namespace orvane {

namespace {

using namespace std::chrono_literals;

constexpr Duration patience = 1s;
constexpr Duration pollInterval = 50ms;

}  // namespace

StopSequence::StopSequence(MainLoop& loop, std::shared_ptr<AppStore> store) : loop_(loop), store_(std::move(store)) {}

void StopSequence::start(std::function<void()> onStopped) {
    if (hasStarted()) return;
    onStopped_ = std::move(onStopped);
    stopping_ = store_->stoppingSessions();
    store_->terminateAllSessions();
    deadline_ = loop_.now() + patience;
    poll();
}

void StopSequence::poll() {
    const bool anyLeft = std::ranges::any_of(stopping_, [](const auto& each) { return each->isStillTerminating(); });
    if (!anyLeft) {
        timer_ = loop_.after(Duration::zero(), [this] { onStopped_(); });
    } else if (loop_.now() < deadline_) {
        timer_ = loop_.after(pollInterval, [this] { poll(); });
    } else {
        killAndFinish();
    }
}

void StopSequence::killAndFinish() {
    for (const auto& session : stopping_)
        session->kill();
    timer_ = loop_.after(pollInterval, [this] { onStopped_(); });
}

}  // namespace orvane
