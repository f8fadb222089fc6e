#include "Platform/TimerQueue.h"

#include <algorithm>
#include <utility>
#include <vector>

namespace orvane {

Registration TimerQueue::add(Entry entry) {
    const Id id = ++lastId_;
    insert(id, std::make_shared<Entry>(std::move(entry)));
    return Registration([weak = weak_from_this(), id] {
        if (const auto queue = weak.lock()) queue->remove(id);
    });
}

std::optional<Instant> TimerQueue::wakeTime() const {
    if (byLatest_.empty()) return std::nullopt;
    return byLatest_.begin()->first;
}

std::optional<Instant> TimerQueue::nextDue() const {
    if (byDue_.empty()) return std::nullopt;
    return byDue_.begin()->first;
}

void TimerQueue::fireDue(Instant now) {
    // The ids are listed first: a timer that a task adds waits for the next call, even when it is due at once.
    std::vector<Id> due;
    for (const auto& [time, id] : byDue_) {
        if (time > now) break;
        due.push_back(id);
    }
    for (const Id id : due) {
        const auto found = entries_.find(id);
        if (found == entries_.end()) continue;  // an earlier task took it back
        const std::shared_ptr<Entry> entry = found->second;
        const Instant dueAt = entry->due;
        remove(id);
        if (entry->interval) {
            const Duration interval = std::max(*entry->interval, Duration(1));
            const auto missed = (now - dueAt) / interval;
            entry->due = dueAt + (missed + 1) * interval;
            insert(id, entry);
        }
        entry->task();
    }
}

void TimerQueue::insert(Id id, std::shared_ptr<Entry> entry) {
    byDue_.emplace(entry->due, id);
    byLatest_.emplace(entry->due + entry->tolerance, id);
    entries_.emplace(id, std::move(entry));
}

void TimerQueue::remove(Id id) {
    const auto found = entries_.find(id);
    if (found == entries_.end()) return;
    byDue_.erase({found->second->due, id});
    byLatest_.erase({found->second->due + found->second->tolerance, id});
    entries_.erase(found);
}

}  // namespace orvane
