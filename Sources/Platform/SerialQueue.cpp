#include "Platform/SerialQueue.h"

#include <cassert>
#include <cstdint>
#include <limits>

namespace orvane {

/// Held by the queue and by the ticket that waits in the pool.
struct SerialQueue::State : std::enable_shared_from_this<State> {
    BackgroundPool& pool;
    std::mutex mutex;                 ///< guards all below
    std::condition_variable changed;  ///< a task ended
    std::deque<Task> waiting;
    std::uint64_t submitted = 0;
    std::uint64_t completed = 0;
    bool isTicketOut = false;  ///< a thread of the pool will come
    std::thread::id runner;    ///< the thread that runs a task; none otherwise

    explicit State(BackgroundPool& itsPool) : pool(itsPool) {}

    bool isBusy() const { return runner != std::thread::id(); }

    /// Asks the pool for a thread unless somebody is at it. Whoever runs tasks looks again before leaving.
    bool needsTicket() {
        if (waiting.empty() || isBusy() || isTicketOut) return false;
        isTicketOut = true;
        return true;
    }

    void sendTicket() {
        pool.submit([self = shared_from_this()] {
            std::unique_lock lock(self->mutex);
            self->isTicketOut = false;
            self->run(lock, std::numeric_limits<std::uint64_t>::max());
        });
    }

    /// Runs what is waiting until `target` tasks are completed in all, or another thread is found running one.
    void run(std::unique_lock<std::mutex>& lock, std::uint64_t target) {
        while (!waiting.empty() && !isBusy() && completed < target) {
            runner = std::this_thread::get_id();
            {
                Task task = std::move(waiting.front());
                waiting.pop_front();
                lock.unlock();
                BackgroundPool::runGuarded(task);
            }
            lock.lock();
            runner = {};
            ++completed;
            changed.notify_all();
        }
    }
};

SerialQueue::SerialQueue(BackgroundPool& pool) : state_(std::make_shared<State>(pool)) {}

SerialQueue::~SerialQueue() {
    flush();
}

void SerialQueue::submit(Task task) {
    bool ticket = false;
    {
        const std::lock_guard lock(state_->mutex);
        state_->waiting.push_back(std::move(task));
        ++state_->submitted;
        ticket = state_->needsTicket();
    }
    if (ticket) state_->sendTicket();
}

void SerialQueue::flush() {
    bool ticket = false;
    {
        std::unique_lock lock(state_->mutex);
        assert(state_->runner != std::this_thread::get_id());
        const std::uint64_t target = state_->submitted;
        while (state_->completed < target) {
            state_->run(lock, target);
            if (state_->completed < target) state_->changed.wait(lock);
        }
        // Tasks that came in during the flush are left to the pool.
        ticket = state_->needsTicket();
    }
    if (ticket) state_->sendTicket();
}

}  // namespace orvane
