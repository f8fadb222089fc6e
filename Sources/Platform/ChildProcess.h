#pragma once

#include <sys/types.h>

#include <cstddef>
#include <expected>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Platform/ExitStatus.h"
#include "Platform/MainLoop.h"
#include "Platform/SystemError.h"

namespace orvane {

/// An external program with pipes. It starts with default signal handlers, no blocked signals, and no descriptor of
/// ours but its three. Used on the main thread; the loop must outlive it.
///
/// Destroying it while the program runs closes the pipes and forgets the program without a signal. It is still reaped:
/// a watch on its end stays with the loop.
class ChildProcess {
 public:
    enum class Input { null, pipe };
    enum class ErrorOutput { separate, intoOutput };
    enum class Group {
        ofParent,
        own,
        /// A session of its own (setsid), so also a group, and no controlling terminal.
        ownSession,
    };

    struct Options {
        /// The first is the program. Without a slash it is looked up in the PATH of the child's environment.
        std::vector<std::string> arguments;
        /// Exactly the child's environment; none inherits ours.
        std::optional<std::map<std::string, std::string>> environment;
        /// Empty: ours.
        std::string workingDirectory;
        Input input = Input::null;
        ErrorOutput errorOutput = ErrorOutput::separate;
        Group group = Group::ofParent;
    };

    /// They run on the loop, never inside a call to this class, and may destroy it. One that is left out loses its
    /// bytes: the pipe is emptied all the same.
    struct Callbacks {
        std::move_only_function<void(std::string_view)> onOutput;
        std::move_only_function<void(std::string_view)> onError;
        /// The last of all. What stood in the pipes at the end was delivered before; then the pipes are closed, so a
        /// grandchild that holds them neither delays this nor can write to them any longer.
        std::move_only_function<void(ExitStatus)> onExit;
    };

    /// What `write` holds at most for a child that does not read.
    static constexpr std::size_t inputLimit = std::size_t{64} * 1024 * 1024;

    /// A program or working directory that cannot be used fails here: "start /x/tool: No such file or directory".
    /// EINVAL: no program, a zero byte in an argument, or a name of a variable that is empty or contains '='.
    [[nodiscard]] static std::expected<std::unique_ptr<ChildProcess>, SystemError> start(MainLoop& loop,
                                                                                         const Options& options,
                                                                                         Callbacks callbacks);
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;
    ~ChildProcess();

    /// Sends the bytes to the child's input, now or as it reads; never blocks. ENOBUFS: what waits would exceed
    /// `inputLimit`, and nothing of these bytes is taken. EPIPE: the input is no pipe or is closed by either side; what
    /// a child does not want to read any more is dropped.
    [[nodiscard]] std::expected<void, SystemError> write(std::string_view bytes);
    /// Closes the child's input once everything written is sent.
    void closeInput();

    /// ESRCH when the child has ended.
    [[nodiscard]] std::expected<void, SystemError> signal(int number) const;
    /// Signals all of the child's group, which may outlive the child: works until `onExit` returns, then ESRCH, for the
    /// number may belong to somebody else. EINVAL when the child shares our group.
    [[nodiscard]] std::expected<void, SystemError> signalGroup(int number) const;

    pid_t pid() const;
    /// None when the child shares our group.
    std::optional<pid_t> processGroup() const;
    bool isRunning() const;

 private:
    struct State;
    explicit ChildProcess(std::shared_ptr<State> state) : state_(std::move(state)) {}

    std::shared_ptr<State> state_;
};

}  // namespace orvane
