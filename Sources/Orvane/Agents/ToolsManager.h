#pragma once

#include <expected>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "Orvane/Agents/InstallLog.h"
#include "Orvane/Agents/LoginCapture.h"
#include "Orvane/Agents/LoginShellRun.h"
#include "Orvane/Support/Signal.h"
#include "OrvaneCore/Agents/AgentTool.h"
#include "OrvaneCore/Agents/ToolsReport.h"
#include "OrvaneCore/Support/L10n.h"
#include "OrvaneCore/Support/OutputLines.h"
#include "Platform/BackgroundPool.h"

namespace orvane {

/// Which of the agents' programs the user has and is signed in to, and their installation. Looks only when asked. On
/// the main thread; what blocks runs elsewhere.
class ToolsManager : public std::enable_shared_from_this<ToolsManager> {
 public:
    /// They outlive the manager. What is installed into a new folder is written into the setup.
    struct Services {
        MainLoop& loop;
        BackgroundPool& pool;
        L10n l10n;
        ShellSetup& shell;
        const LoginCapture& loginCapture;
    };

    enum class Order {
        install,
        update,  ///< refused when the tool is not there
    };

    struct Failure {
        enum class Reason {
            otherRunning,  ///< `detail` is the other tool's display name
            npmMissing,
            notInstalled,  ///< so it cannot be updated
            notStarted,    ///< the shell; `detail` tells why
            shellSilent,   ///< its profile does not come to an end
            failed,        ///< the log tells why
            notFound,      ///< the installation went well, but the shell does not find the program
        };
        Reason reason = Reason::failed;
        std::string detail = {};
        bool operator==(const Failure&) const = default;
    };

    /// The user has chosen another language, for the log from now on.
    void setTexts(const L10n& l10n) { services_.l10n = l10n; }

    using Done = std::function<void()>;
    using Installed = std::function<void(const std::expected<void, Failure>&)>;

    /// Use std::make_shared.
    explicit ToolsManager(const Services& services);

    /// Of every tool, by its id; `checking` before the first refresh.
    const std::map<std::string, ToolState>& states() const { return states_; }
    const std::map<std::string, AuthState>& authStates() const { return authStates_; }
    /// Of the tools that are installed, unless as an alias or function of the user's shell.
    const std::map<std::string, std::string>& binaryPaths() const { return binaryPaths_; }
    /// Unknown before the first refresh, and when the shell did not get that far.
    std::optional<bool> npmAvailable() const { return npmAvailable_; }
    const std::string& installLog() const { return log_.text(); }
    /// The part of the log that belongs to the installation that is under way, or was last.
    std::string_view currentInstallLog() const { return log_.currentRun(); }
    /// Null when none is under way.
    const AgentTool* toolInWork() const { return install_ ? install_->tool : nullptr; }
    /// Whether the shell answered all that it was asked by the last refresh. If not, what is not known to be there
    /// counts as missing.
    bool isComplete() const { return answer_ == Answer::whole; }

    /// The path of the shell that is asked.
    const std::string& shell() const { return services_.shell.shell; }

    /// Something of all this has changed; at most once per turn of the loop.
    Signal<> changed;
    /// A program printed this line while it installed a tool.
    Signal<std::string> installPrinted;

    /// Looks anew and runs `done` when all is known. While it looks already, that answers this call too.
    void refresh(Done done = {});

    /// Runs the tool's command for installation, which brings its newest version, then looks at that tool anew. What
    /// is under way for the same tool answers this call too; another tool's is not disturbed and refuses this one.
    /// `done` is called in a later turn. The installation is killed with the manager.
    void install(const AgentTool& tool, Order order, Installed done);

 private:
    struct Install {
        const AgentTool* tool = nullptr;
        Order order = Order::install;
        std::vector<Installed> waiting;
        OutputLines lines;
        bool commandSucceeded = false;
        std::unique_ptr<LoginShellRun> run = {};  ///< of the installer, then of the question what it brought
    };

    /// How the shell took the question of the last refresh.
    enum class Answer { whole, cut, none };

    void scheduleChange();
    /// Looks at files, then goes on.
    void survey(void (ToolsManager::*then)());

    void detect();
    void takeAnswer(std::string_view output);
    void take(const AgentTool& tool, const ToolsReport& report);
    bool isInstalling(const AgentTool& tool) const;

    void beginIfPossible();
    void runInstaller();
    void takeOutput(const std::vector<std::string>& lines);
    void installerEnded(const ExitStatus& status);
    void lookAtInstalled();
    void settle(const ToolsReport& report);
    void end(std::string_view textKey, const std::expected<void, Failure>& result);

    Services services_;
    std::map<std::string, ToolState> states_;
    std::map<std::string, AuthState> authStates_;
    std::map<std::string, std::string> binaryPaths_;
    std::optional<bool> npmAvailable_;
    Answer answer_ = Answer::whole;
    InstallLog log_;
    bool changePending_ = false;

    bool isRefreshing_ = false;
    std::vector<Done> waitingForRefresh_;
    /// Tools that were installed while a refresh went on; it may have looked before.
    std::set<const AgentTool*> newerThanRefresh_;
    std::unique_ptr<LoginShellRun> question_;
    std::optional<Install> install_;
};

}  // namespace orvane
