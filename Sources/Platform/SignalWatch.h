#pragma once

#include <csignal>
#include <functional>
#include <initializer_list>

#include "Platform/FileDescriptor.h"
#include "Platform/MainLoop.h"

namespace orvane {

/// Turns signals to the process into calls on the main loop. Made before any thread starts, since the threads of the
/// process inherit which signals are blocked; children of `ChildProcess` start with none blocked.
class SignalWatch {
 public:
    SignalWatch(MainLoop& loop, std::initializer_list<int> signals, std::function<void(int)> onSignal);

    /// Lets writes to a closed pipe or socket fail with EPIPE, in place of ending the process.
    static void ignoreBrokenPipes();

 private:
    void readSignals();

    FileDescriptor descriptor_;
    std::function<void(int)> onSignal_;
    Registration watch_;
};

}  // namespace orvane
