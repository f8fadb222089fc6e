#pragma once

#include <gtest/gtest.h>

#include "Orvane/Agents/CustomAgentStore.h"
#include "Orvane/Workspace/AppStore.h"
#include "Platform/ChildProcess.h"
#include "Platform/Files.h"
#include "Platform/ManualMainLoop.h"
#include "Platform/ProcessGroup.h"
#include "Support/TemporaryFolder.h"

namespace orvane::testing {

/// A session's program as a child with pipes; what it writes is its activity.
class PipedSessionProcess final : public SessionProcess {
 public:
    explicit PipedSessionProcess(std::unique_ptr<ChildProcess> child) : child_(std::move(child)) {}

    pid_t processId() const override { return child_ != nullptr && child_->isRunning() ? child_->pid() : 0; }
    pid_t foregroundProcessGroup() const override { return 0; }
    void terminate() override { child_.reset(); }

 private:
    std::unique_ptr<ChildProcess> child_;
};

/// Runs each session's command with /bin/sh, in a process group of its own.
class ShellLauncher final : public SessionLauncher {
 public:
    explicit ShellLauncher(MainLoop& loop) : loop_(loop) {}

    std::expected<std::unique_ptr<SessionProcess>, LaunchFailure> launch(const SessionController& session,
                                                                         SessionProcessEvents events) override {
        auto child = ChildProcess::start(
            loop_,
            {.arguments = {"/bin/sh", "-c", session.identity().command.value_or("true")},
             .workingDirectory = session.identity().projectPath,
             .group = ChildProcess::Group::own},
            {.onOutput = [activity = std::move(events.onActivity)](std::string_view bytes) { activity(bytes); },
             .onError = {},
             .onExit =
                 [exit = std::move(events.onExit)](ExitStatus status) {
                     const int code = status.shellCode();
                     exit(code > 128 ? code - 128 : code << 8);  // as wait(2) would tell it
                 }});
        if (!child) return std::unexpected(LaunchFailure{.error = std::move(child.error())});
        return std::make_unique<PipedSessionProcess>(std::move(*child));
    }

 private:
    MainLoop& loop_;
};

/// A store on a manual loop, with its files in a folder of the test.
class StoreFixture : public ::testing::Test {
 protected:
    /// No program of a test outlives it.
    ~StoreFixture() override { store->terminateAllSessions(); }

    std::shared_ptr<AppStore> makeStore() {
        return std::make_shared<AppStore>(
            AppStore::Services{.loop = loop,
                               .pool = pool,
                               .preferences = preferences,
                               .stateFile = stateFile,
                               .launcher = &launcher,
                               .customAgent = [this](const Uuid& id) { return agents.spec(id); }});
    }

    Uuid project() { return store->addProject(folder.path()); }

    SessionController& session(const Uuid& inProject, const std::string& command = "exec sleep 1000") {
        SessionController* made =
            store->createSession({.kind = SessionKind::shell, .project = inProject, .command = command});
        EXPECT_NE(made, nullptr);
        return *made;
    }

    TemporaryFolder folder;
    ManualMainLoop loop;
    BackgroundPool pool{2};
    SerialQueue queue{pool};
    PreferencesStore preferences{loop, queue, folder.path() + "/preferences.json", [](const SystemError&) {}};
    StateFile stateFile{loop, queue, folder.path() + "/state.json", [](const SystemError&) {}};
    CustomAgentStore agents{loop, queue, preferences, folder.path() + "/agents.json", [](const SystemError&) {}};
    ShellLauncher launcher{loop};
    std::shared_ptr<AppStore> store = makeStore();
};

}  // namespace orvane::testing
