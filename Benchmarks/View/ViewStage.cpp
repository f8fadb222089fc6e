#include "View/ViewStage.h"

#include <fmt/format.h>

#include <cstdlib>

namespace orvane::benchmark {

namespace {

/// A session that shows a terminal and runs nothing.
class IdleProcess final : public SessionProcess {
 public:
    explicit IdleProcess(MainLoop& loop) : terminal_(loop, loop, {}, [](std::optional<int>) {}) {}

    pid_t processId() const override { return 0; }
    pid_t foregroundProcessGroup() const override { return 0; }
    void terminate() override {}
    HeadlessTerminal* terminal() override { return &terminal_; }

 private:
    HeadlessTerminal terminal_;
};

void ignore(const SystemError& /*error*/) {}

}  // namespace

class ViewStage::Launcher final : public SessionLauncher {
 public:
    explicit Launcher(MainLoop& loop) : loop_(loop) {}

    std::expected<std::unique_ptr<SessionProcess>, LaunchFailure> launch(const SessionController& /*session*/,
                                                                         SessionProcessEvents /*events*/) override {
        return std::make_unique<IdleProcess>(loop_);
    }

 private:
    MainLoop& loop_;
};

ViewStage::ViewStage()
    : preferences_(loop_, queue_, environment_.folder() + "/preferences.json", ignore),
      stateFile_(loop_, queue_, environment_.folder() + "/state.json", ignore),
      agents_(loop_, queue_, preferences_, environment_.folder() + "/agents.json", ignore),
      launcher_(std::make_unique<Launcher>(loop_)),
      shell_({.environment = environment_.variables(), .shell = "/bin/sh"}),
      login_(loop_, shell_),
      tools_(std::make_shared<ToolsManager>(
          ToolsManager::Services{.loop = loop_, .pool = pool_, .l10n = {}, .shell = shell_, .loginCapture = login_})),
      history_(std::make_shared<HistoryService>(
          HistoryService::Services{.loop = loop_,
                                   .pool = pool_,
                                   .fileQueue = queue_,
                                   .home = environment_.folder(),
                                   .indexPath = environment_.folder() + "/history.json"})),
      store_(std::make_shared<AppStore>(AppStore::Services{.loop = loop_,
                                                           .pool = pool_,
                                                           .preferences = preferences_,
                                                           .stateFile = stateFile_,
                                                           .l10n = {},
                                                           .launcher = launcher_.get(),
                                                           .customAgent = {},
                                                           .git = {},
                                                           .notify = {}})),
      view_(std::make_unique<ViewContext>(
          ViewContext::Services{
              .store = *store_, .tools = *tools_, .agents = agents_, .history = *history_, .preferences = preferences_},
          ViewContext::Actions{.requestFrame = [] {},
                               .detach = {},
                               .stopHost = {},
                               .openProject = {},
                               .repeat = {},
                               .openLink = {},
                               .copy = {}})) {}

ViewStage::~ViewStage() {
    view_.reset();
    store_->terminateAllSessions();
}

void ViewStage::showPanes(int count) {
    const Uuid project = store_->addProject(environment_.folder());
    store_->selectProject(project);
    store_->createSession({.kind = SessionKind::shell, .project = project});
    for (int pane = 1; pane < count; ++pane) {
        const auto leaves = store_->workspace().surfaceTrees.at(store_->workspaceSurface(project)).leafIDs();
        // Columns first, and each of them in two.
        const auto leaf = leaves[static_cast<std::size_t>(pane < count / 2 ? pane - 1 : (pane - count / 2) * 2)];
        const auto half = store_->splitPane(leaf, pane < count / 2 ? PaneAxis::horizontal : PaneAxis::vertical);
        store_->createSession({.kind = SessionKind::shell, .project = project, .targetLeaf = half});
    }
    if (terminals().size() != static_cast<std::size_t>(count)) {
        fmt::print(stderr, "view-bench: there are not {} panes\n", count);
        std::exit(EXIT_FAILURE);
    }
}

int ViewStage::fill(int entries) {
    int count = 0;
    for (int number = 0; count < entries; ++number) {
        const Uuid project = store_->addProject(fmt::format("{}/project {}", environment_.folder(), number));
        for (int tab = 0; tab < 4; ++tab)
            store_->openSurface(project, SurfaceMeta::workspace(fmt::format("tab {} of {}", tab, number)));
        for (int session = 0; session < 5; ++session)
            store_->createSession({.kind = SessionKind::shell,
                                   .project = project,
                                   .title = fmt::format("session {} builds part {}", session, number)});
        count += 1 + 5 + 5;  // itself, its tabs with the one that it began with, and its sessions
    }
    return count;
}

std::vector<Terminal*> ViewStage::terminals() {
    std::vector<Terminal*> terminals;
    for (const auto& session : store_->sessions()) {
        if (session->terminal() != nullptr) terminals.push_back(&session->terminal()->terminal);
    }
    return terminals;
}

}  // namespace orvane::benchmark
