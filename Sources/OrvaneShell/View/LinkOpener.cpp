#include "OrvaneShell/View/LinkOpener.h"

#include <utility>

#include "Platform/ProgramLookup.h"

namespace orvane {

namespace {

constexpr const char* desktopOpener = "xdg-open";

}  // namespace

/// Empty when there is none.
std::string LinkOpener::command() const {
    std::string chosen = preferences_.string(preference, {});
    if (!chosen.empty() && chosen != "auto") return chosen;
    const bool hasDesktop = !variable(desktop_, "DISPLAY").empty() || !variable(desktop_, "WAYLAND_DISPLAY").empty();
    const std::string path = variable(currentEnvironment(), "PATH");
    const bool hasOpener = findProgram(desktopOpener, path.empty() ? defaultSearchPath : path).has_value();
    return hasDesktop && hasOpener ? desktopOpener : std::string();
}

bool LinkOpener::open(const std::string& address, std::function<void()> onFailure) {
    const std::string opener = command();
    if (opener.empty()) return false;
    Environment environment = currentEnvironment();
    for (const auto& [name, value] : desktop_)
        environment[name] = value;
    auto& process = running_.emplace_back();
    // The command may have arguments of its own; the address is never read by the shell. What it starts outlives it,
    // and would die of a pipe that is closed then.
    auto started = ChildProcess::start(
        loop_,
        {.arguments = {"/bin/sh", "-c", "exec " + opener + " \"$1\" >/dev/null 2>&1", "sh", address},
         .environment = std::move(environment),
         .group = ChildProcess::Group::ownSession},
        {.onExit = [this, &process, onFailure = std::move(onFailure)](ExitStatus status) {
            if (!status.isSuccess() && onFailure) onFailure();
            std::erase_if(running_, [&](const auto& each) { return &each == &process; });
        }});
    if (!started) {
        running_.pop_back();
        return false;
    }
    process = *std::move(started);
    return true;
}

}  // namespace orvane
