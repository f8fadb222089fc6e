#pragma once

#include <condition_variable>
#include <deque>
#include <mutex>
#include <optional>
#include <thread>
#include <type_traits>
#include <utility>
#include <variant>
#include <vector>

#include "Platform/MainLoop.h"

namespace orvane {

/// A fixed number of threads for work that blocks. They are started when first needed, sleep while there is nothing
/// to do, and take no signals. A task should catch what it expects; an exception that leaves it costs a line on
/// standard error, not the process.
class BackgroundPool {
 public:
    /// As many threads as the machine runs at once, within 2 and 8.
    static std::size_t defaultThreadCount();

    explicit BackgroundPool(std::size_t threadCount = defaultThreadCount());
    BackgroundPool(const BackgroundPool&) = delete;
    BackgroundPool& operator=(const BackgroundPool&) = delete;
    /// Finishes what was submitted. Not to be called from one of its own threads.
    ~BackgroundPool();

    /// From any thread. If not one thread can be started the task runs inside this call, late but not lost.
    void submit(Task task);

    /// Runs the task, turning an escaping exception into a line on standard error.
    static void runGuarded(Task& task) noexcept;
    /// The line for the exception that is being handled.
    static void reportEscapedException() noexcept;

 private:
    void startThread();
    void serve();

    const std::size_t threadCount_;
    std::mutex mutex_;  ///< guards all below
    std::condition_variable wake_;
    std::deque<Task> tasks_;
    std::vector<std::thread> threads_;
    std::size_t idle_ = 0;
    bool stopping_ = false;
};

/// Runs `work()` on the pool and then `done(result)` on the loop, which must outlive the pool. When an exception leaves
/// `work`, `done` is not called and the line on standard error tells; either way `done` is destroyed on the loop.
template <typename Work, typename Done>
void runInBackground(BackgroundPool& pool, MainLoop& loop, Work work, Done done) {
    using Result = std::invoke_result_t<Work&>;
    using Stored = std::conditional_t<std::is_void_v<Result>, std::monostate, Result>;
    pool.submit([&loop, work = std::move(work), done = std::move(done)]() mutable {
        std::optional<Stored> result;
        try {
            if constexpr (std::is_void_v<Result>) {
                work();
                result.emplace();
            } else {
                result.emplace(work());
            }
        } catch (...) {
            BackgroundPool::reportEscapedException();
        }
        loop.post([done = std::move(done), result = std::move(result)]() mutable {
            if (!result) return;
            if constexpr (std::is_void_v<Result>) {
                done();
            } else {
                done(std::move(*result));
            }
        });
    });
}

}  // namespace orvane
