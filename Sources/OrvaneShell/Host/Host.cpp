#include "OrvaneShell/Host/Host.h"

#include <unistd.h>

#include <algorithm>
#include <array>
#include <csignal>
#include <filesystem>
#include <iostream>
#include <utility>

#include "OrvaneShell/Host/HostPaths.h"
#include "Platform/Files.h"
#include "Platform/Folders.h"
#include "Platform/LineClient.h"
#include "Platform/TimeZoneName.h"
#include "Platform/UnixSocket.h"
#include "TerminalEmulator/HeadlessTerminal.h"

namespace orvane {

namespace {

using namespace std::chrono_literals;

constexpr Duration placesRetryInterval = 1s;
constexpr Duration placesRetryTolerance = 500ms;

bool isSocket(const std::string& path) {
    std::error_code error;
    return std::filesystem::is_socket(path, error);
}

std::string executablePath() {
    std::error_code error;
    return std::filesystem::read_symlink("/proc/self/exe", error).string();
}

WholeFileWriter::ErrorCallback reporting(const DiagnosticLog& log) {
    return [&log](const SystemError& error) {
        log.log(error.message());
        std::cerr << error.message() << '\n';
    };
}

EnvironmentEntries entries(const Environment& environment) {
    EnvironmentEntries all;
    all.reserve(environment.size());
    for (const auto& [name, value] : environment)
        all.push_back(name + "=" + value);
    return all;
}

L10n chosenTexts(const PreferencesStore& preferences, const Environment& environment) {
    return {chooseLanguage(preferences.string("language", {}), variable(environment, "LC_ALL"),
                           variable(environment, "LANG"))};
}

constexpr std::string_view scrollbackKey = "terminal.scrollback";

int scrollbackOf(const PreferencesStore& preferences) {
    return static_cast<int>(std::clamp<std::int64_t>(
        preferences.integer(scrollbackKey, TerminalLauncher::defaultScrollback), 0, 1'000'000));
}

}  // namespace

Host::Host(Mode mode, Environment environment, InstanceLock lock, DiagnosticLog log)
    : mode_(mode),
      environment_(std::move(environment)),
      lock_(std::move(lock)),
      log_(std::move(log)),
      fileQueue_(pool_),
      preferences_(loop_, fileQueue_, Folders::preferencesFile(environment_), reporting(log_)),
      l10n_(chosenTexts(preferences_, environment_)),
      stateFile_(loop_, fileQueue_, HostPaths::state(environment_), reporting(log_)),
      agents_(loop_, fileQueue_, preferences_, HostPaths::agents(environment_), reporting(log_)),
      launchSupport_(Folders::home(environment_), Folders::temporary(environment_).value_or("")),
      shellSetup_(ShellSetup::of(environment_)),
      loginCapture_(loop_, shellSetup_),
      launcher_({.loop = loop_,
                 .support = launchSupport_,
                 .shell = shellSetup_,
                 .login = loginCapture_,
                 .scrollback = scrollbackOf(preferences_)}),
      tools_(std::make_shared<ToolsManager>(ToolsManager::Services{
          .loop = loop_, .pool = pool_, .l10n = l10n_, .shell = shellSetup_, .loginCapture = loginCapture_})),
      store_(std::make_shared<AppStore>(
          AppStore::Services{.loop = loop_,
                             .pool = pool_,
                             .preferences = preferences_,
                             .stateFile = stateFile_,
                             .l10n = l10n_,
                             .home = Folders::home(environment_),
                             .log = [this](const std::string& line) { log_.log(line); },
                             .launcher = &launcher_,
                             .customAgent = [this](const Uuid& id) { return agents_.spec(id); },
                             .git = [this] { return Git(loginCapture_.entries().value_or(entries(environment_))); }})),
      history_(std::make_shared<HistoryService>(HistoryService::Services{.loop = loop_,
                                                                         .pool = pool_,
                                                                         .fileQueue = fileQueue_,
                                                                         .home = Folders::home(environment_),
                                                                         .indexPath = HostPaths::history(environment_),
                                                                         .timeZone = timeZoneName(environment_),
                                                                         .language = l10n_.language,
                                                                         .onError = reporting(log_)})),
      stopSequence_(loop_, store_),
      // In a turn of its own: a view that asks for the end is still at work, and goes with it.
      views_(preferences_, Folders::home(environment_), [this] { loop_.post([this] { stop(); }); }),
      router_(
          {.store = *store_,
           .agents = agents_,
           .tools = *tools_,
           .history = *history_,
           .preferences = preferences_,
           .openView = [this](HostContext& host, const JSONObject& arguments) { return views_.open(host, arguments); }},
          l10n_, [this] { stop(); }),
      server_(loop_,
              {.onRequest = [this](const auto& connection, std::string_view line) { router_.handle(connection, line); },
               .faultReply = [this](LineServer::Fault fault) { return router_.faultReply(fault); }},
              {}) {}

Host::~Host() {
    if (!socketPath_.empty()) unlink(socketPath_.c_str());
}

std::expected<void, std::string> Host::start() {
    signals_.emplace(loop_, std::initializer_list<int>{SIGTERM, SIGINT, SIGHUP}, [this](int signal) {
        if (signal == SIGHUP && mode_ != Mode::foreground) return;
        store_->noteShutdown();
        stop();
    });
    preferencesWatch_ = preferences_.onChange([this](std::string_view key) { notePreference(key); });
    agents_.load();
    store_->load();
    if (auto listening = listen(); !listening) return std::unexpected(listening.error().message());
    store_->beginRestore();
    keepPlaces();
    log_.log("launch: didFinishLaunching bundle=" + executablePath());
    return {};
}

/// What is chosen while the host runs is in force at once.
void Host::notePreference(std::string_view key) {
    if (key == scrollbackKey) {
        const int rows = scrollbackOf(preferences_);
        launcher_.setScrollback(rows);
        for (const auto& session : store_->sessions()) {
            if (session->terminal() != nullptr) session->terminal()->changeScrollback(rows);
        }
    } else if (key == "language") {
        l10n_ = chosenTexts(preferences_, environment_);
        store_->setTexts(l10n_);
        tools_->setTexts(l10n_);
        history_->setLanguage(l10n_.language);
        router_.setTexts(l10n_);
    }
}

void Host::run() {
    loop_.run();
    log_.log("launch: applicationWillTerminate");
    store_->terminateAllSessions();
}

/// Binds the socket and tells others where it is.
std::expected<void, SystemError> Host::listen() {
    isListening_ = false;
    const auto path = HostPaths::socket(environment_);
    if (!path) return std::unexpected(path.error());
    auto listener = UnixSocket::listenAt(*path);
    if (!listener) return std::unexpected(listener.error());
    server_.serve(std::move(*listener));
    socketPath_ = *path;
    auto published = lock_.publish({.processId = getpid(), .socketPath = socketPath_});
    isListening_ = published.has_value();
    return published;
}

/// Cleaners of temporary folders and the end of a login session take the socket away while the host goes on, and
/// people delete the folder with the lock.
void Host::keepPlaces() {
    placesRetry_.reset();
    const bool isLocked = keepLock();
    if (stopSequence_.hasStarted()) return;
    const bool isReachable = keepSocket();
    if (isLocked && isReachable) return;
    placesRetry_ = loop_.after(placesRetryInterval, [this] { keepPlaces(); }, placesRetryTolerance);
}

/// Whether the lock is in its place and watched.
bool Host::keepLock() {
    const std::string path = HostPaths::lock(environment_);
    if (!lock_.isInPlace()) {
        lockWatch_.reset();
        (void)createFolders(Folders::applicationSupport(environment_));
        auto lock = InstanceLock::acquire(path);
        if (!lock) {
            log_.log(lock.error().message());
            return false;
        }
        if (!*lock) {
            // Another host was quicker, and two must not write one state file. The socket is that host's by now.
            log_.log("launch: another host has the lock, this one stops");
            socketPath_.clear();
            stateFile_.giveUp();
            stop();
            return true;
        }
        lock_ = std::move(**lock);
        isListening_ = false;
        store_->saveState();
        agents_.restoreFile();
    }
    if (!lockWatch_) watchFolder(lockWatch_, Folders::applicationSupport(environment_));
    return lockWatch_ && lock_.isInPlace();
}

/// Whether the socket is in its place and watched.
bool Host::keepSocket() {
    if (!isListening_ || !isSocket(socketPath_)) {
        socketWatch_.reset();
        if (const auto listening = listen(); !listening) {
            log_.log(listening.error().message());
            return false;
        }
    }
    if (!socketWatch_) watchFolder(socketWatch_, socketPath_.substr(0, socketPath_.rfind('/')));
    return socketWatch_ && isSocket(socketPath_);
}

void Host::watchFolder(std::unique_ptr<FolderWatch>& watch, const std::string& folder) {
    auto made = FolderWatch::create(
        loop_, folder,
        [this, &watch](FolderWatch::Change change) {
            if (change == FolderWatch::Change::folderGone) watch.reset();
            keepPlaces();
        },
        50ms);
    if (made) watch = std::move(*made);
}

void Host::stop() {
    if (stopSequence_.hasStarted()) return;
    // A command that comes now waits for the end and then starts the next host or finds none; this one would soon
    // forget what it was told.
    server_.stopServing();
    views_.endAll();
    lockWatch_.reset();
    socketWatch_.reset();
    placesRetry_.reset();
    if (const std::string path = std::exchange(socketPath_, {}); !path.empty()) unlink(path.c_str());
    stopSequence_.start([this] { loop_.stop(); });
}

}  // namespace orvane
