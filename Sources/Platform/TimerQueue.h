#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <set>

#include "Platform/MainLoop.h"

namespace orvane {

/// The timers of one main loop, with no clock of its own: it says when to wake, and runs what is due at a given time.
class TimerQueue : public std::enable_shared_from_this<TimerQueue> {
 public:
    struct Entry {
        Instant due;
        Duration tolerance{};
        std::optional<Duration> interval;  ///< of a repeating timer
        Task task;
    };

    Registration add(Entry entry);

    /// The latest time that serves every timer within its tolerance; none without timers.
    std::optional<Instant> wakeTime() const;
    /// The earliest time at which some timer is due.
    std::optional<Instant> nextDue() const;

    /// Runs all timers that are due, earliest first, each at most once.
    void fireDue(Instant now);

 private:
    using Id = std::uint64_t;

    void insert(Id id, std::shared_ptr<Entry> entry);
    void remove(Id id);

    std::map<Id, std::shared_ptr<Entry>> entries_;
    std::set<std::pair<Instant, Id>> byDue_;
    std::set<std::pair<Instant, Id>> byLatest_;
    Id lastId_ = 0;
};

}  // namespace orvane
