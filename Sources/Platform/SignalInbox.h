#pragma once

#include <csignal>
#include <initializer_list>
#include <optional>

#include "Platform/FileDescriptor.h"

namespace orvane {

/// Holds signals to the process back while it lives, for a program of one thread that waits for them along with other
/// things. What nobody took comes through when it goes.
class SignalInbox {
 public:
    SignalInbox(std::initializer_list<int> signals);
    SignalInbox(const SignalInbox&) = delete;
    SignalInbox& operator=(const SignalInbox&) = delete;
    ~SignalInbox();

    /// To be polled: readable when a signal has come.
    int descriptor() const { return descriptor_.number(); }
    /// The next signal that has come; the same one several times counts once.
    std::optional<int> take() const;

    /// Ends the process by the signal, so that whoever started it sees why. Does not return.
    [[noreturn]] static void dieOf(int signal);

 private:
    sigset_t before_{};
    FileDescriptor descriptor_;
};

}  // namespace orvane
