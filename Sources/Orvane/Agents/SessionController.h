#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "Orvane/Agents/SessionApproval.h"
#include "Orvane/Agents/SessionProcess.h"
#include "Orvane/Chat/ChatTransport.h"
#include "Orvane/History/TranscriptWatch.h"
#include "OrvaneCore/Agents/AgentSpec.h"
#include "OrvaneCore/Agents/SessionKind.h"
#include "OrvaneCore/Agents/SessionStatus.h"
#include "OrvaneCore/Agents/StatusDecision.h"
#include "OrvaneCore/Support/Date.h"
#include "OrvaneCore/Support/L10n.h"
#include "OrvaneCore/Support/Uuid.h"
#include "Platform/MainLoop.h"

namespace orvane {

class TerminalAgent;

/// One running session: its program and what the system believes about it. Made by the store only; main thread only.
class SessionController : public std::enable_shared_from_this<SessionController> {
 public:
    /// What never changes.
    struct Identity {
        Uuid id;
        Uuid projectID;
        SessionKind kind = SessionKind::shell;
        /// The shell command line it was asked to run; none for the kind's own.
        std::optional<std::string> command;
        /// The working directory.
        std::string projectPath;
        /// The project's folder, also when `projectPath` is a worktree.
        std::string projectRoot;
        Date startedAt;
        std::optional<AgentSpec> agentSpec;
    };

    struct Appearance {
        std::string userTitle;
        std::optional<int> tintIndex;
        double fontSize = 11.0;
    };

    /// Set by the store, which a session never keeps alive.
    struct Callbacks {
        /// After every change that a view would show; `from` is the status before it.
        std::function<void(const SessionStatus& from)> onChange;
        std::function<void(TranscriptWatch::News)> onTranscriptGrowth;
        std::function<void(const std::vector<std::string>&)> onSlashCommands;
        std::function<void(const std::string&)> onAITitle;
        std::function<void()> onFocus;
        std::function<void()> onHostAttached;
        std::function<void()> onAttention;
        /// Its terminal shows something else than before.
        std::function<void()> onOutput;
        std::function<void(const TerminalNews&)> onNews;
    };

    /// What sessions live in; the loop must outlive them.
    struct Surroundings {
        MainLoop& loop;
        L10n l10n;
        /// The user's home folder, where agents keep their files.
        std::string home;
        /// A line for whoever looks into a fault; may be empty.
        std::function<void(const std::string& line)> log;
        /// What transcripts are followed with; without it nobody reads them.
        std::optional<TranscriptWatch::Files> transcripts = {};
    };

    SessionController(Identity identity, Appearance appearance, Surroundings surroundings);
    ~SessionController();
    SessionController(const SessionController&) = delete;
    SessionController& operator=(const SessionController&) = delete;

    void install(Callbacks callbacks) { callbacks_ = std::move(callbacks); }

    /// Starts the program. A session whose program cannot be started becomes failed, with -1, and keeps the reason.
    void launch(SessionLauncher& launcher);
    const std::optional<LaunchFailure>& launchFailure() const { return launchFailure_; }
    /// Makes it a chat session; its program is the transport's.
    void setTransport(std::unique_ptr<ChatTransport> transport);

    const Identity& identity() const { return identity_; }
    const Uuid& id() const { return identity_.id; }
    const SessionStatus& status() const { return status_; }
    bool isActive() const { return status_.isActive(); }
    bool hasExited() const { return hasExited_; }
    /// What to call it: the user's title, else the name of the agent, else that of the kind.
    std::string title() const;
    const Appearance& appearance() const { return appearance_; }
    /// The title that the user gives; a blank one takes it back.
    void rename(const std::string& title);
    /// The process id of the program; 0 without one.
    pid_t processId() const;
    /// The terminal of the program, also after it has ended; null when it never had one.
    HeadlessTerminal* terminal() const { return process_ == nullptr ? nullptr : process_->terminal(); }

    /// The id that its transcript was told to have, in lower case, so that its file is known without a search.
    const std::optional<std::string>& forcedTranscriptID() const { return forcedTranscriptID_; }

    bool needsAttention() const { return needsAttention_; }
    /// An agent has come to the end of its work, and nobody has looked at it since.
    bool hasUnseenEnd() const { return hasUnseenEnd_; }
    void raiseAttention();
    void clearAttention();
    /// The view tells that its pane took the keyboard.
    void noteFocus();

    /// Every change of the status goes through here.
    void setStatus(const SessionStatus& status, StatusSource source);
    /// What decided the status, and when.
    struct Evidence {
        StatusSource source = StatusSource::start;
        Date since;
    };
    const Evidence& evidence() const { return evidence_; }

    /// Who drives it; null for one that is no agent in a terminal.
    TerminalAgent* agent() const { return agent_.get(); }
    /// Bytes that a user typed; nothing without a terminal.
    void type(std::string_view bytes);

    SessionApproval& approval() { return approval_; }
    const SessionApproval& approval() const { return approval_; }
    /// The agent asks this.
    void noteRequest(const ApprovalPolicy::Request& request);
    /// The conversation begins anew.
    void noteClear();
    /// Its transcript has grown, or is another one now.
    void noteTranscript(TranscriptWatch::News news);
    /// Something that a view shows has changed, other than the status.
    void noteChange() { changed(); }
    /// Shows a text for a few seconds; empty when there is none.
    void showNotice(std::string_view textKey);
    /// The user has chosen another language, for the notices from now on.
    void setTexts(const L10n& l10n) { surroundings_.l10n = l10n; }
    const std::string& transientNotice() const { return transientNotice_; }

    /// Asks the program to end: its process group and the foreground group of its terminal get SIGTERM. Agents start
    /// children, so signalling the program alone would leave them running. More than once does nothing more.
    void terminate();
    /// Whether a group that `terminate` signalled, or the transport's program, is still there.
    bool isStillTerminating() const;
    /// Ends what did not end by itself.
    void kill();

 private:
    void noteActivity(std::string_view bytes);
    void noteTitle();
    void noteNews(const TerminalNews& news);
    void noteExit(int waitStatus);
    void changed();
    void collectProcessGroups();

    Identity identity_;
    Appearance appearance_;
    Surroundings surroundings_;
    Callbacks callbacks_;
    SessionStatus status_;
    SessionStatus publishedStatus_;
    Evidence evidence_;
    SessionApproval approval_;
    std::string transientNotice_;
    Registration noticeTimer_;
    bool needsAttention_ = false;
    bool hasUnseenEnd_ = false;
    bool hasExited_ = false;
    bool terminationAsked_ = false;
    std::set<pid_t> terminatingProcessGroups_;
    std::optional<LaunchFailure> launchFailure_;
    std::optional<std::string> forcedTranscriptID_;
    std::unique_ptr<SessionProcess> process_;
    std::unique_ptr<ChatTransport> transport_;
    std::unique_ptr<TerminalAgent> agent_;
};

}  // namespace orvane
