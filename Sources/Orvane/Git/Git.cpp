#include "Orvane/Git/Git.h"

#include <array>
#include <csignal>
#include <map>
#include <memory>
#include <string_view>
#include <utility>

#include "OrvaneCore/Support/Text.h"
#include "Platform/AsioMainLoop.h"
#include "Platform/ChildProcess.h"

namespace orvane {

namespace {

/// They would lead every command to the repository of whoever started the host, such as a hook.
constexpr std::array foreign = {"GIT_DIR",        "GIT_WORK_TREE",        "GIT_COMMON_DIR",
                                "GIT_INDEX_FILE", "GIT_OBJECT_DIRECTORY", "GIT_PREFIX",
                                "GIT_NAMESPACE"};

/// What a shell answers for a program that it cannot start.
constexpr int notStarted = 127;

std::map<std::string, std::string> variables(EnvironmentEntries entries) {
    EnvironmentList::set(entries, "GIT_TERMINAL_PROMPT", "0");
    EnvironmentList::set(entries, "GIT_OPTIONAL_LOCKS", "0");
    EnvironmentList::set(entries, "GIT_EDITOR", "true");
    std::map<std::string, std::string> named;
    for (const std::string& entry : entries) {
        const auto name = EnvironmentList::name(entry);
        if (!name.empty()) named.emplace(name, entry.substr(name.size() + 1));
    }
    for (const char* name : foreign)
        named.erase(name);
    return named;
}

/// One command, served by a loop of its own on the calling thread.
class Run {
 public:
    Git::Output finish(const ChildProcess::Options& options, Duration limit) {
        auto child = ChildProcess::start(loop_, options,
                                         {.onOutput = [this](std::string_view bytes) { take(output_.text, bytes); },
                                          .onError = [this](std::string_view bytes) { take(output_.error, bytes); },
                                          .onExit = [this](ExitStatus status) { end(status); }});
        if (!child) return {.status = notStarted, .text = {}, .error = child.error().message()};
        child_ = *std::move(child);
        const Registration timeout = loop_.after(limit, [this] { kill(); });
        loop_.run();
        return std::move(output_);
    }

 private:
    void take(std::string& kept, std::string_view bytes) {
        if (isEnded_) return;
        if (bytes.size() > Git::outputLimit - kept.size()) return kill();
        kept += bytes;
    }

    void kill() {
        isEnded_ = true;
        // ESRCH: it has ended just now.
        (void)child_->signalGroup(SIGKILL);
    }

    void end(const ExitStatus& status) {
        output_.status = isEnded_ ? 128 + SIGKILL : status.shellCode();
        (void)child_->signalGroup(SIGKILL);  // what it left running
        loop_.stop();
    }

    AsioMainLoop loop_;
    std::unique_ptr<ChildProcess> child_;
    Git::Output output_;
    bool isEnded_ = false;
};

}  // namespace

Git::Output Git::run(std::vector<std::string> arguments, const std::string& folder, Duration limit) const {
    arguments.insert(arguments.begin(), {"/usr/bin/env", "git"});
    return Run().finish({.arguments = std::move(arguments),
                         .environment = variables(environment_),
                         .workingDirectory = folder,
                         .group = ChildProcess::Group::ownSession},
                        limit);
}

std::optional<std::string> Git::currentBranch(const std::string& folder) const {
    const Output output = run({"rev-parse", "--abbrev-ref", "HEAD"}, folder);
    const auto branch = Text::trimmed(output.text);
    if (!output.isSuccess() || branch.empty()) return std::nullopt;
    return std::string(branch);
}

}  // namespace orvane
