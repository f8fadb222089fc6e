#pragma once

#include <gtest/gtest.h>

#include <csignal>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "Platform/ChildProcess.h"
#include "Platform/Environment.h"
#include "Platform/InstanceLock.h"
#include "Platform/ManualMainLoop.h"
#include "Support/TemporaryFolder.h"

namespace orvane {

/// A program that was started, and what it has said so far.
struct Invocation {
    std::unique_ptr<ChildProcess> child;
    std::string output;
    std::string errors;
    std::optional<ExitStatus> end;

    int status() const { return end ? end->shellCode() : -1; }
};

/// The executable with a home of the test's own; the host that it starts ends with the test.
class HostTest : public ::testing::Test {
 protected:
    HostTest() {
        environment = currentEnvironment();
        for (const char* name : {"LC_ALL", "LANG", "LC_MESSAGES", "ORVANE_SESSION"})
            environment.erase(name);
        environment["HOME"] = folder.path();
        environment["XDG_DATA_HOME"] = folder.path("data");
        environment["XDG_CONFIG_HOME"] = folder.path("config");
        environment["XDG_RUNTIME_DIR"] = folder.path("run");
        environment["TMPDIR"] = folder.path("tmp");
        for (const char* name : {"run", "tmp", "project"})
            std::filesystem::create_directory(folder.path(name));
    }
    ~HostTest() override {
        const pid_t host = hostProcess();
        if (host > 1) kill(host, SIGKILL);
    }

    std::shared_ptr<Invocation> start(std::vector<std::string> words) {
        words.insert(words.begin(), ORVANE_EXECUTABLE);
        return startProgram(std::move(words));
    }

    std::shared_ptr<Invocation> startProgram(std::vector<std::string> words) {
        auto run = std::make_shared<Invocation>();
        auto child = ChildProcess::start(
            loop,
            {.arguments = std::move(words), .environment = environment, .workingDirectory = folder.path("project")},
            // The invocation owns the child, which owns these.
            {.onOutput = [raw = run.get()](std::string_view bytes) { raw->output += bytes; },
             .onError = [raw = run.get()](std::string_view bytes) { raw->errors += bytes; },
             .onExit = [raw = run.get()](ExitStatus status) { raw->end = status; }});
        EXPECT_TRUE(child.has_value());
        if (child) run->child = std::move(*child);
        return run;
    }

    std::shared_ptr<Invocation> orvane(std::vector<std::string> words) {
        auto run = start(std::move(words));
        EXPECT_TRUE(loop.runUntil([&] { return run->end.has_value(); }));
        return run;
    }

    /// Runs a line of a shell that calls the program as "$0".
    std::shared_ptr<Invocation> shell(const std::string& line) {
        auto run = startProgram({"/bin/sh", "-c", line, ORVANE_EXECUTABLE});
        EXPECT_TRUE(loop.runUntil([&] { return run->end.has_value(); }));
        return run;
    }

    InstanceLock::Observation seen() const { return InstanceLock::observe(folder.path("data/Orvane/host.lock")); }
    pid_t hostProcess() const { return seen().record.processId; }

    ::testing::AssertionResult hostRuns() {
        const bool runs = loop.runUntil([this] { return seen().state == InstanceLock::State::running; });
        return runs ? ::testing::AssertionSuccess() : ::testing::AssertionFailure() << "no host";
    }

    TemporaryFolder folder;
    Environment environment;
    ManualMainLoop loop;
};

}  // namespace orvane
