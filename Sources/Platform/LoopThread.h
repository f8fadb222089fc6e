#pragma once

#include <thread>

#include "Platform/AsioMainLoop.h"
#include "Platform/SignalsBlocked.h"

namespace orvane {

/// A second loop on a thread of its own, for waiting on descriptors whose bytes are many. What belongs to it is touched
/// on its thread only; `post` gets there.
class LoopThread {
 public:
    LoopThread() {
        const SignalsBlocked blocked;
        thread_ = std::thread([this] { loop_.run(); });
    }
    LoopThread(const LoopThread&) = delete;
    LoopThread& operator=(const LoopThread&) = delete;
    ~LoopThread() {
        loop_.post([this] { loop_.stop(); });
        thread_.join();
    }

    MainLoop& loop() { return loop_; }

 private:
    AsioMainLoop loop_;
    std::thread thread_;
};

}  // namespace orvane
