#pragma once

#include <string>
#include <utility>
#include <vector>

#include "Platform/Environment.h"
#include "Support/ShellRun.h"

namespace orvane {

/// A tmux of its own, without anybody's configuration, that ends with this. Its first window has a shell.
class TmuxServer {
 public:
    struct Size {
        int cols = 120;
        int rows = 30;
    };

    /// The socket's folder must exist. Windows have the variables of the environment, but for what tmux sets itself.
    TmuxServer(std::string socket, Environment environment, std::string folder, Size size)
        : socket_(std::move(socket)), environment_(std::move(environment)), folder_(std::move(folder)) {
        for (const char* name : {"TERM", "COLORTERM", "TMUX", "TMUX_PANE"})
            environment_.erase(name);
        environment_["PS1"] = "outer> ";
        start({"new-session", "-d", "-x", std::to_string(size.cols), "-y", std::to_string(size.rows)});
    }
    TmuxServer(const TmuxServer&) = delete;
    TmuxServer& operator=(const TmuxServer&) = delete;
    ~TmuxServer() { run({"kill-server"}); }

    /// Opens another window with a shell. Windows count from 0.
    void openWindow() { start({"new-window", "-d"}); }

    /// Keys by the names of tmux: "C-a", "Left", "Enter".
    void press(int window, const std::vector<std::string>& keys) const {
        std::vector<std::string> words = {"send-keys", "-t", target(window)};
        words.insert(words.end(), keys.begin(), keys.end());
        run(words);
    }
    void type(int window, const std::string& text) const { run({"send-keys", "-t", target(window), "-l", text}); }
    void enter(int window, const std::string& line) const {
        type(window, line);
        press(window, {"Enter"});
    }
    void resize(int window, Size size) const {
        run({"resize-window", "-t", target(window), "-x", std::to_string(size.cols), "-y", std::to_string(size.rows)});
    }

    std::string screen(int window) const { return run({"capture-pane", "-p", "-t", target(window)}); }
    /// With SGR sequences before what they change.
    std::string coloredScreen(int window) const { return run({"capture-pane", "-p", "-e", "-t", target(window)}); }
    /// A format of tmux, such as "#{alternate_on}".
    std::string state(int window, const std::string& format) const {
        return run({"display-message", "-p", "-t", target(window), format});
    }

 private:
    static std::string target(int window) { return ":" + std::to_string(window); }

    void start(std::vector<std::string> words) const {
        words.insert(words.end(), {"-c", folder_, "--", "/bin/sh"});
        run(words);
    }

    /// What tmux prints, its complaints too.
    std::string run(const std::vector<std::string>& words) const {
        std::string line = "env -i TERM=xterm-256color";
        for (const auto& [name, value] : environment_)
            line += ' ' + name + '=' + shellQuoted(value);
        line += " tmux -u -f /dev/null -S " + shellQuoted(socket_);
        for (const std::string& word : words)
            line += ' ' + shellQuoted(word);
        return outputOfBash(line + " 2>&1");
    }

    std::string socket_;
    Environment environment_;
    std::string folder_;
};

}  // namespace orvane
