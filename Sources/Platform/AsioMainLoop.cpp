#include "Platform/AsioMainLoop.h"

#include <boost/asio/io_context.hpp>
#include <boost/asio/posix/stream_descriptor.hpp>
#include <boost/asio/post.hpp>
#include <boost/asio/steady_timer.hpp>
#include <map>
#include <optional>

#include "Platform/TimerQueue.h"

namespace orvane {

namespace asio = boost::asio;

struct AsioMainLoop::Implementation : std::enable_shared_from_this<Implementation> {
    struct Watch {
        int descriptor;
        Readiness readiness;
        Task task;
        bool cancelled = false;
    };

    /// The reactor may know a descriptor once only, so all its watches share this. The descriptor stays the caller's.
    struct Watched {
        asio::posix::stream_descriptor stream;
        int watches = 0;
    };

    asio::io_context context{1};
    asio::steady_timer timer{context};
    std::shared_ptr<TimerQueue> timers = std::make_shared<TimerQueue>();
    std::optional<Instant> armedFor;
    std::map<int, Watched> watched;

    ~Implementation() {
        for (auto& [descriptor, entry] : watched)
            entry.stream.release();
    }

    Registration addTimer(TimerQueue::Entry entry) {
        Registration registration = timers->add(std::move(entry));
        arm();
        return registration;
    }

    /// Sets the one system timer for the next wake-up. A timer that was taken back may leave it set too early, which
    /// costs one wake-up that finds nothing.
    void arm() {
        const auto wake = timers->wakeTime();
        if (!wake || (armedFor && *armedFor <= *wake)) return;
        armedFor = wake;
        timer.expires_at(std::chrono::time_point_cast<asio::steady_timer::duration>(*wake));
        timer.async_wait([this](const boost::system::error_code& error) {
            if (error) return;
            armedFor.reset();
            timers->fireDue(std::chrono::steady_clock::now());
            arm();
        });
    }

    Registration addWatch(const std::shared_ptr<Watch>& watch) {
        auto found = watched.find(watch->descriptor);
        if (found == watched.end()) {
            Watched entry{asio::posix::stream_descriptor(context, watch->descriptor)};
            found = watched.emplace(watch->descriptor, std::move(entry)).first;
        }
        ++found->second.watches;
        wait(watch);
        return Registration([weak = weak_from_this(), watch] {
            watch->cancelled = true;
            if (const auto self = weak.lock()) self->removeWatch(watch->descriptor);
        });
    }

    void wait(const std::shared_ptr<Watch>& watch) {
        const auto kind = watch->readiness == Readiness::readable ? asio::posix::descriptor_base::wait_read
                                                                  : asio::posix::descriptor_base::wait_write;
        watched.at(watch->descriptor).stream.async_wait(kind, [this, watch](const boost::system::error_code& error) {
            if (watch->cancelled) return;
            if (error != asio::error::operation_aborted) watch->task();
            if (!watch->cancelled) wait(watch);
        });
    }

    /// The caller may close the descriptor right after this, so the reactor lets go of it at once. What else watches
    /// it has its wait aborted and waits anew.
    void removeWatch(int descriptor) {
        const auto found = watched.find(descriptor);
        if (--found->second.watches > 0) {
            found->second.stream.cancel();
            return;
        }
        found->second.stream.release();
        watched.erase(found);
    }
};

AsioMainLoop::AsioMainLoop() : implementation_(std::make_shared<Implementation>()) {}

AsioMainLoop::~AsioMainLoop() = default;

Instant AsioMainLoop::now() const {
    return std::chrono::steady_clock::now();
}

WallTime AsioMainLoop::wallTime() const {
    return std::chrono::time_point_cast<std::chrono::microseconds>(std::chrono::system_clock::now());
}

void AsioMainLoop::post(Task task) {
    asio::post(implementation_->context, [task = std::move(task)]() mutable { task(); });
}

Registration AsioMainLoop::addTimer(Duration delay, Duration tolerance, Repeat repeat, Task task) {
    return implementation_->addTimer({.due = now() + delay,
                                      .tolerance = tolerance,
                                      .interval = repeat == Repeat::forever ? std::optional(delay) : std::nullopt,
                                      .task = std::move(task)});
}

Registration AsioMainLoop::watch(int descriptor, Readiness readiness, Task task) {
    using Watch = Implementation::Watch;
    return implementation_->addWatch(std::make_shared<Watch>(Watch{descriptor, readiness, std::move(task)}));
}

void AsioMainLoop::run() {
    const auto work = asio::make_work_guard(implementation_->context);
    implementation_->context.run();
    implementation_->context.restart();
}

void AsioMainLoop::stop() {
    implementation_->context.stop();
}

}  // namespace orvane
