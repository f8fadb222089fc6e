#include <algorithm>
#include <boost/json.hpp>
#include <csignal>
#include <fstream>
#include <utility>

#include "OrvaneCore/Support/JSONObject.h"
#include "ViewLatency/PaneProgram.h"
#include "ViewLatency/Workspaces.h"

namespace orvane::benchmark {

Measured<std::unique_ptr<OrvaneWorkspace>> OrvaneWorkspace::open(const std::string& orvane, const std::string& flood,
                                                                 Terminal* screen) {
    std::unique_ptr<OrvaneWorkspace> workspace(new OrvaneWorkspace);
    if (auto started = workspace->start(orvane, flood, screen); !started) return Failure(started.error());
    return workspace;
}

Measured<void> OrvaneWorkspace::start(const std::string& orvane, const std::string& flood, Terminal* screen) {
    const Environment& variables = environment_.variables();
    std::ofstream(environment_.folder() + "/.zshrc").close();  // else zsh asks a new user what to put there
    auto host = HostProcess::start(orvane, variables, ChildProcess::Group::ownSession);
    if (!host) return Failure(host.error());
    host_.emplace(*std::move(host));
    auto client = host_->connect();
    if (!client) return Failure(client.error());
    client_.emplace(*std::move(client));
    if (auto opened = ask(*client_, "open", {{"path", environment_.folder()}}); !opened) return Failure(opened.error());
    // The newest pane has the keys.
    if (!flood.empty()) {
        auto added = addSession(flood);
        if (!added) return Failure(added.error());
        floodId_ = *std::move(added);
    }
    auto added = addSession(PaneProgram::command(PaneProgram::echo));
    if (!added) return Failure(added.error());
    echoId_ = *std::move(added);
    auto window = Window::open({orvane, "view"}, variables, screen);
    if (!window) return Failure("orvane: " + window.error());
    window_ = *std::move(window);
    return {};
}

OrvaneWorkspace::~OrvaneWorkspace() {
    window_.reset();
    client_.reset();
    if (host_) (void)host_->stop();
}

Measured<std::string> OrvaneWorkspace::addSession(const std::string& command) {
    const auto made = ask(*client_, "new", {{"kind", "service"}, {"command", command}});
    if (!made) return Failure(made.error());
    return std::string(JSONObject(*made).string("id"));
}

Measured<std::vector<std::string>> OrvaneWorkspace::holdFlood() {
    const auto list = ask(*client_, "list");
    if (!list) return Failure(list.error());
    for (const JsonValue& row : list->as_array()) {
        const JSONObject session(row);
        if (session.string("id") != floodId_) continue;
        const auto process = static_cast<pid_t>(session.integer("pid"));
        if (process > 1) kill(process, SIGSTOP);
    }
    auto rows = rowsOf(floodId_);
    if (!rows) return rows;
    const auto others = rowsOf(echoId_);
    if (!others) return others;
    rows->insert(rows->end(), others->begin(), others->end());
    return rows;
}

/// Those that are not empty.
Measured<std::vector<std::string>> OrvaneWorkspace::rowsOf(const std::string& session) {
    const auto screen = ask(*client_, "screen", {{"session", session}});
    if (!screen) return Failure(screen.error());
    std::vector<std::string> rows;
    const std::string text(JSONObject(*screen).string("text"));
    for (std::size_t begin = 0; begin < text.size();) {
        const std::size_t end = std::min(text.find('\n', begin), text.size());
        if (end > begin) rows.push_back(text.substr(begin, end - begin));
        begin = end + 1;
    }
    return rows;
}

}  // namespace orvane::benchmark
