#pragma once

#include <memory>
#include <optional>
#include <string>

#include "Support/HostProcess.h"
#include "Support/TemporaryEnvironment.h"
#include "ViewLatency/Window.h"

namespace orvane::benchmark {

/// A workspace with the echo in its pane, and a flood beside it when there is one, shown in a window. Each has folders
/// of its own, and all of it ends with the object.
class Workspace {
 public:
    /// The one that the measured program draws.
    virtual Window& window() = 0;
    /// The process that holds the panes and draws.
    virtual pid_t server() const = 0;
    Workspace() = default;
    Workspace(const Workspace&) = delete;
    Workspace& operator=(const Workspace&) = delete;
    virtual ~Workspace() = default;
};

class TmuxWorkspace final : public Workspace {
 public:
    /// The flood is a command for the shell; empty for none.
    [[nodiscard]] static Measured<std::unique_ptr<TmuxWorkspace>> open(const std::string& flood);
    ~TmuxWorkspace() override;

    Window& window() override { return *window_; }
    pid_t server() const override { return server_; }

 private:
    TmuxWorkspace() = default;
    [[nodiscard]] Measured<std::string> tmux(std::vector<std::string> words) const;
    [[nodiscard]] Measured<void> start(const std::string& flood);

    TemporaryEnvironment environment_;
    std::unique_ptr<Window> window_;
    pid_t server_ = 0;
};

class OrvaneWorkspace final : public Workspace {
 public:
    [[nodiscard]] static Measured<std::unique_ptr<OrvaneWorkspace>> open(const std::string& orvane,
                                                                         const std::string& flood,
                                                                         Terminal* screen = nullptr);
    ~OrvaneWorkspace() override;

    Window& window() override { return *window_; }
    pid_t server() const override { return host_->pid(); }
    LineClient& client() { return *client_; }

    /// Lets the flood write no more, and answers with what its pane and the other should show, row by row.
    [[nodiscard]] Measured<std::vector<std::string>> holdFlood();

 private:
    OrvaneWorkspace() = default;
    [[nodiscard]] Measured<void> start(const std::string& orvane, const std::string& flood, Terminal* screen);
    [[nodiscard]] Measured<std::string> addSession(const std::string& command);
    [[nodiscard]] Measured<std::vector<std::string>> rowsOf(const std::string& session);

    TemporaryEnvironment environment_;
    std::optional<HostProcess> host_;
    std::optional<LineClient> client_;
    std::unique_ptr<Window> window_;
    std::string floodId_;
    std::string echoId_;
};

}  // namespace orvane::benchmark
