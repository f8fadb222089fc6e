#pragma once

#include <sys/types.h>

#include <cstddef>
#include <expected>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Platform/Environment.h"
#include "Platform/MainLoop.h"
#include "Platform/PseudoTerminalHelpers.h"
#include "Platform/ReadChannel.h"
#include "Platform/WriteQueue.h"

namespace orvane {

class LocalProcess;

/// Receives what a program on a pseudo-terminal writes, and its end. Called on the main loop; may destroy the process.
class LocalProcessDelegate {
 public:
    virtual ~LocalProcessDelegate() = default;

    /// Once, after everything the program has written: the wait status as the system gave it, so that a program that
    /// called exit(1) has 256. Nothing when somebody else has reaped it.
    virtual void processTerminated(LocalProcess& source, std::optional<int> exitCode) = 0;
    virtual void dataReceived(std::string_view slice) = 0;
    virtual WindowSize getWindowSize() = 0;
};

/// A program on a pseudo-terminal: its output in pieces that leave the main loop free, bytes for it, its end. Used on
/// the main loop; only reading is done on another thread.
///
/// Destroying it closes the terminal, whose foreground gets SIGHUP; the program itself is not signalled. It is reaped
/// all the same.
class LocalProcess {
 public:
    /// The most that waits for a program that does not read; what exceeds it is dropped.
    static constexpr std::size_t sendLimit = std::size_t{64} << 20;

    struct Start {
        std::string executable;  ///< an absolute path; there is no search
        std::vector<std::string> args;
        std::optional<std::vector<std::string>> environment;  ///< "NAME=value"; `defaultEnvironment` without it
        std::optional<std::string> execName;                  ///< the zeroth argument; the executable without it
        std::string currentDirectory;                         ///< empty: ours; one that cannot be entered is ignored
    };

    /// Output is delivered on `dispatch` and read on `reader`, the loop of another thread. All must outlive it.
    LocalProcess(MainLoop& dispatch, MainLoop& reader, LocalProcessDelegate& delegate);
    LocalProcess(const LocalProcess&) = delete;
    LocalProcess& operator=(const LocalProcess&) = delete;
    ~LocalProcess();

    /// For whoever looks into a fault: each read and write then prints a line to the standard output.
    bool debugIO = false;
    std::size_t sendCount() const { return sendCount_; }  ///< writes queued so far
    std::size_t total() const { return total_; }          ///< bytes written so far
    std::size_t totalRead() const { return totalRead_; }  ///< bytes read while `debugIO` was set

    /// Nothing happens while one is running. When it cannot be started, `running` stays false and no call comes; the
    /// error is that of `PseudoTerminalHelpers::forkAndExec`.
    [[nodiscard]] std::expected<void, SystemError> startProcess(const Start& start);

    /// Queues bytes for the program, one write each; dropped unless `running`. A write that fails prints a line to the
    /// standard error output: the standard output belongs to whoever runs us.
    void send(std::string_view data);
    /// Closes the terminal and sends the program SIGTERM. No call comes any more; the program is reaped in silence.
    void terminate();
    /// Tells the terminal its size; nothing unless `running`.
    void setWindowSize(const WindowSize& size);
    /// Each piece that is read also goes to a file of its own in the folder; nothing ends that.
    void setHostLogging(std::optional<std::string> directory);

    int childfd() const;                          ///< the master side; -1 when closed
    pid_t shellPid() const { return shellPid_; }  ///< 0 before the start and once it is reaped
    bool running() const { return running_; }

    /// What a program gets that is given no environment, by what ours has.
    static std::vector<std::string> defaultEnvironment(const Environment& parent = currentEnvironment());

 private:
    void noteRead(std::string_view bytes);
    void noteSent(std::size_t number, const WriteQueue::Completion& completion);
    void childProcessChanged();
    void close();

    MainLoop& dispatch_;
    MainLoop& reader_;
    LocalProcessDelegate& delegate_;
    std::optional<std::string> loggingDirectory_;
    std::optional<ReadChannel> io_;
    std::optional<WriteQueue> input_;
    FileDescriptor exit_;
    Registration childMonitor_;
    pid_t shellPid_ = 0;
    bool running_ = false;
    std::size_t sendCount_ = 0;
    std::size_t total_ = 0;
    std::size_t totalRead_ = 0;
};

}  // namespace orvane
