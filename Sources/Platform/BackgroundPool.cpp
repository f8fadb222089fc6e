#include "Platform/BackgroundPool.h"

#include <algorithm>
#include <exception>
#include <system_error>

#include "Platform/SignalsBlocked.h"
#include "Platform/StandardError.h"

namespace orvane {

std::size_t BackgroundPool::defaultThreadCount() {
    return std::clamp<std::size_t>(std::thread::hardware_concurrency(), 2, 8);
}

BackgroundPool::BackgroundPool(std::size_t threadCount) : threadCount_(std::max<std::size_t>(threadCount, 1)) {}

BackgroundPool::~BackgroundPool() {
    {
        const std::lock_guard lock(mutex_);
        stopping_ = true;
    }
    wake_.notify_all();
    for (std::thread& thread : threads_)
        thread.join();
}

void BackgroundPool::submit(Task task) {
    {
        const std::lock_guard lock(mutex_);
        // A sleeping thread that has a task waiting for it already does not count as free.
        if (tasks_.size() >= idle_ && threads_.size() < threadCount_ && !stopping_) startThread();
        if (!threads_.empty()) {
            tasks_.push_back(std::move(task));
            wake_.notify_one();
            return;
        }
    }
    runGuarded(task);
}

void BackgroundPool::startThread() {
    const SignalsBlocked blocked;
    try {
        threads_.emplace_back([this] { serve(); });
    } catch (const std::system_error& error) {
        // Those there are carry on, and the next submit tries again.
        reportOnStandardError("no further background thread", error.what());
    }
}

void BackgroundPool::serve() {
    std::unique_lock lock(mutex_);
    while (true) {
        ++idle_;
        wake_.wait(lock, [this] { return stopping_ || !tasks_.empty(); });
        --idle_;
        if (tasks_.empty()) return;
        {
            Task task = std::move(tasks_.front());
            tasks_.pop_front();
            lock.unlock();
            runGuarded(task);
        }
        lock.lock();
    }
}

void BackgroundPool::runGuarded(Task& task) noexcept {
    try {
        task();
    } catch (...) {
        reportEscapedException();
    }
}

void BackgroundPool::reportEscapedException() noexcept {
    try {
        throw;
    } catch (const std::exception& exception) {
        reportOnStandardError("a background task failed", exception.what());
    } catch (...) {
        reportOnStandardError("a background task failed", "an exception of unknown type");
    }
}

}  // namespace orvane
