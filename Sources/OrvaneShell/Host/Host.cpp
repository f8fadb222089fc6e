#include "OrvaneShell/Host/Host.h"

#include <unistd.h>

#include <array>
#include <csignal>
#include <filesystem>
#include <iostream>
#include <thread>

#include "OrvaneShell/Host/HostPaths.h"
#include "Platform/Files.h"
#include "Platform/Folders.h"
#include "Platform/LineClient.h"
#include "Platform/UnixSocket.h"

namespace orvane {

namespace {

using namespace std::chrono_literals;

constexpr Duration socketRetryInterval = 1s;

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

L10n chosenTexts(const PreferencesStore& preferences, const Environment& environment) {
    return {chooseLanguage(preferences.string("language", {}), variable(environment, "LC_ALL"),
                           variable(environment, "LANG"))};
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
      store_(std::make_shared<AppStore>(AppStore::Services{
          .loop = loop_, .pool = pool_, .preferences = preferences_, .stateFile = stateFile_, .l10n = l10n_})),
      stopSequence_(loop_, store_),
      router_(*store_, l10n_, [this] { stop(); }),
      server_(loop_,
              {.onRequest = [this](const auto& connection, std::string_view line) { router_.handle(connection, line); },
               .faultReply = [this](LineServer::Fault fault) { return router_.faultReply(fault); }},
              {}) {}

Host::~Host() {
    signals_.reset();
    socketWatch_.reset();
    if (!socketPath_.empty()) unlink(socketPath_.c_str());
}

std::expected<void, std::string> Host::start() {
    signals_.emplace(loop_, std::initializer_list<int>{SIGTERM, SIGINT, SIGHUP}, [this](int signal) {
        if (signal != SIGHUP || mode_ == Mode::foreground) stop();
    });
    store_->load();
    if (auto listening = listen(); !listening) return std::unexpected(listening.error().message());
    watchSocket();
    log_.log("launch: didFinishLaunching bundle=" + executablePath());
    return {};
}

void Host::run() {
    loop_.run();
    log_.log("launch: applicationWillTerminate");
    store_->terminateAllSessions();
}

/// Binds the socket and tells others where it is.
std::expected<void, SystemError> Host::listen() {
    const auto path = HostPaths::socket(environment_);
    if (!path) return std::unexpected(path.error());
    auto listener = UnixSocket::listenAt(*path);
    if (!listener) return std::unexpected(listener.error());
    server_.serve(std::move(*listener));
    socketPath_ = *path;
    return lock_.publish({.processId = getpid(), .socketPath = socketPath_});
}

/// Cleaners of temporary folders and the end of a login session take the socket away while the host goes on.
void Host::watchSocket() {
    const std::string folder = socketPath_.substr(0, socketPath_.rfind('/'));
    auto watch = FolderWatch::create(loop_, folder, [this](FolderWatch::Change) { restoreSocket(); }, 50ms);
    if (watch) {
        socketWatch_ = std::move(*watch);
        socketRetry_.reset();
    } else {
        socketRetry_ = loop_.after(socketRetryInterval, [this] { restoreSocket(); });
    }
}

void Host::restoreSocket() {
    std::error_code error;
    if (std::filesystem::is_socket(socketPath_, error) && socketWatch_ && !socketRetry_) return;
    const auto listening = listen();
    if (!listening) log_.log(listening.error().message());
    // The callback of a watch may destroy it, and this may be one.
    watchSocket();
    if (!listening) socketRetry_ = loop_.after(socketRetryInterval, [this] { restoreSocket(); });
}

void Host::stop() {
    stopSequence_.start([this] { loop_.stop(); });
}

}  // namespace orvane
