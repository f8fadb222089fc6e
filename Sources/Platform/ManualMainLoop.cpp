#include "Platform/ManualMainLoop.h"

#include <poll.h>

#include <algorithm>
#include <vector>

namespace orvane {

namespace {

/// The wall clock of tests starts here: 2026-01-01T00:00:00Z.
constexpr WallTime epoch = WallTime(std::chrono::sys_days(std::chrono::year(2026) / 1 / 1));

}  // namespace

ManualMainLoop::ManualMainLoop()
    : timers_(std::make_shared<TimerQueue>()), watches_(std::make_shared<std::list<std::shared_ptr<Watch>>>()) {}

WallTime ManualMainLoop::wallTime() const {
    return epoch + std::chrono::duration_cast<std::chrono::microseconds>(now_.time_since_epoch());
}

void ManualMainLoop::post(Task task) {
    const std::lock_guard lock(mutex_);
    posted_.push_back(std::move(task));
}

Registration ManualMainLoop::addTimer(Duration delay, Duration tolerance, Repeat repeat, Task task) {
    return timers_->add({.due = now_ + delay,
                         .tolerance = tolerance,
                         .interval = repeat == Repeat::forever ? std::optional(delay) : std::nullopt,
                         .task = std::move(task)});
}

Registration ManualMainLoop::watch(int descriptor, Readiness readiness, Task task) {
    const auto watch = std::make_shared<Watch>(descriptor, readiness, std::move(task));
    watches_->push_back(watch);
    return Registration([weakList = std::weak_ptr(watches_), watch] {
        watch->cancelled = true;
        if (const auto list = weakList.lock()) list->remove(watch);
    });
}

void ManualMainLoop::runTurn() {
    std::deque<Task> turn;
    {
        const std::lock_guard lock(mutex_);
        turn.swap(posted_);
    }
    for (Task& task : turn)
        task();
}

void ManualMainLoop::runPosted() {
    const auto isIdle = [this] {
        const std::lock_guard lock(mutex_);
        return posted_.empty();
    };
    while (!isIdle())
        runTurn();
}

void ManualMainLoop::advance(Duration span) {
    const Instant target = now_ + span;
    runPosted();
    while (true) {
        const auto due = timers_->nextDue();
        if (!due || *due > target) break;
        now_ = std::max(now_, *due);
        timers_->fireDue(now_);
        runPosted();
    }
    now_ = target;
}

bool ManualMainLoop::runUntil(const std::function<bool()>& condition, std::chrono::milliseconds realLimit) {
    const auto deadline = std::chrono::steady_clock::now() + realLimit;
    while (true) {
        runPosted();
        if (condition()) return true;
        if (std::chrono::steady_clock::now() >= deadline) return false;
        serveDescriptors(std::chrono::milliseconds(5));
    }
}

void ManualMainLoop::serveDescriptors(std::chrono::milliseconds wait) {
    const std::vector<std::shared_ptr<Watch>> watches(watches_->begin(), watches_->end());
    std::vector<pollfd> polled;
    polled.reserve(watches.size());
    for (const auto& watch : watches) {
        polled.push_back(
            {watch->descriptor, static_cast<short>(watch->readiness == Readiness::readable ? POLLIN : POLLOUT), 0});
    }
    if (poll(polled.data(), polled.size(), static_cast<int>(wait.count())) <= 0) return;
    for (std::size_t index = 0; index < watches.size(); ++index) {
        if (polled[index].revents != 0 && !watches[index]->cancelled) watches[index]->task();
    }
}

}  // namespace orvane
