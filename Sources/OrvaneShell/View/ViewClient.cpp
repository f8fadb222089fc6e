#include "OrvaneShell/View/ViewClient.h"

#include <poll.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <boost/json.hpp>
#include <cerrno>
#include <csignal>
#include <ostream>
#include <utility>

#include "OrvaneCore/Agents/LaunchPlan.h"
#include "OrvaneCore/Support/Overloaded.h"
#include "OrvaneCore/Support/Text.h"
#include "OrvaneShell/CommandLine/CommandStatus.h"
#include "OrvaneShell/View/LinkOpener.h"
#include "OrvaneShell/View/OuterTerminal.h"
#include "OrvaneShell/View/ViewModes.h"

namespace orvane {

namespace {

/// How long the host has for its last byte once it was told that the view is to end.
constexpr auto leavePatience = std::chrono::seconds(1);

constexpr std::string_view resizeLine = R"({"resize":true})";
constexpr std::string_view redrawLine = R"({"redraw":true})";
constexpr std::string_view detachLine = R"({"detach":true})";

/// A request is text, and what cannot be one is left out.
std::string textOrNothing(const std::string& text) {
    return Text::isValidUtf8(text) ? text : std::string();
}

/// Of characters: the first of the three that is set.
std::string locale(const Environment& environment) {
    for (const char* name : {"LC_ALL", "LC_CTYPE", "LANG"})
        if (const std::string value = variable(environment, name); !value.empty()) return value;
    return {};
}

std::string requestLine(const ClientContext& client, const ViewClient::Wish& wish) {
    const Environment& environment = client.environment;
    boost::json::object arguments{{"term", textOrNothing(variable(environment, "TERM"))},
                                  {"colorTerm", textOrNothing(variable(environment, "COLORTERM"))},
                                  {"noColor", !variable(environment, "NO_COLOR").empty()},
                                  {"environmentLanguage", rawValue(chooseLanguage({}, variable(environment, "LC_ALL"),
                                                                                  variable(environment, "LANG")))},
                                  {"locale", textOrNothing(locale(environment))},
                                  {"screenReader", wish.isPlain},
                                  {"insideTmux", !variable(environment, "TMUX").empty()},
                                  {"folder", textOrNothing(client.workingDirectory)}};
    boost::json::object desktop;
    for (const std::string_view name : LinkOpener::variables) {
        const std::string value = variable(environment, std::string(name));
        if (!value.empty()) desktop[name] = textOrNothing(value);
    }
    arguments["desktop"] = std::move(desktop);
    if (!wish.project.empty()) arguments["project"] = textOrNothing(client.projectText(wish.project));
    return client.requestLine("view", arguments);
}

/// Why no view can be opened from here; empty when one can.
std::string obstacle(const ClientContext& client, const ViewClient::Wish& wish) {
    const std::string session = variable(client.environment, std::string(LaunchPlan::sessionVariable));
    if (!session.empty()) return client.l10n.text("view.inside");
    const std::string term = variable(client.environment, "TERM");
    return term == "dumb" && !wish.isPlain ? client.l10n.text("error.dumbTerminal", term) : std::string();
}

/// A terminal that can place no cursor was sent no sequences either.
std::string_view plainFarewell(const Environment& environment) {
    const bool hasSequences = OuterTerminal::of(variable(environment, "TERM"), {}, false).positionsCursor;
    return hasSequences ? plainLeaveText() : "\r\n";
}

int refuse(ClientContext& client, const std::string& message) {
    client.errors << message << '\n';
    return CommandStatus::refused;
}

/// What is said when the view has ended in order; empty when the user knows.
std::string_view textKeyOf(std::string_view reason) {
    if (reason == "detached") return "view.detached";
    if (reason == "replaced") return "view.replaced";
    if (reason == "quit") return "view.hostEnded";
    return {};
}

}  // namespace

int ViewClient::run(ClientContext& client, const Wish& wish) {
    if (const std::string reason = obstacle(client, wish); !reason.empty()) return refuse(client, reason);
    const auto loan = TerminalLoan::begin(STDIN_FILENO, STDOUT_FILENO);
    if (!loan) return refuse(client, client.l10n.text("error.viewNeedsTerminal"));
    const std::string request = requestLine(client, wish);
    for (int attempt = 1;; ++attempt) {
        const auto host = client.connect(HostStart::ifNeeded);
        if (!host) return host.error();
        ViewClient view(client, *loan, **host);
        const End end = view.lend(request);
        view.giveBack();
        if (!view.wasUnread(end) || attempt == ClientContext::attempts) return view.conclude(end);
    }
}

/// Signals are held back from here on, so that none ends the process while the terminal is somebody else's. One that
/// would stop it is dropped: the keyboard sends none, and a shell cannot use a terminal that is drawn on.
ViewClient::ViewClient(ClientContext& client, const TerminalLoan& loan, LineClient& host)
    : client_(client),
      loan_(loan),
      host_(host),
      signals_{SIGWINCH, SIGCONT, SIGTERM, SIGHUP, SIGINT, SIGQUIT, SIGTSTP, SIGTTIN, SIGTTOU},
      deadline_(Clock::now() + LineClient::defaultPatience) {}

ViewClient::End ViewClient::lend(const std::string& request) {
    const std::array terminal = {STDIN_FILENO, STDOUT_FILENO};
    if (auto sent = host_.send(request, terminal); !sent) return HostLost{std::move(sent.error())};
    std::optional<End> end;
    while (!end)
        end = wait();
    return *std::move(end);
}

/// Waits until something happens and deals with it.
std::optional<ViewClient::End> ViewClient::wait() {
    int limit = -1;
    if (deadline_) {
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(*deadline_ - Clock::now());
        limit = static_cast<int>(std::max<std::int64_t>(left.count(), 0));
    }
    // Of the terminal only the hang-up is of interest, which is told unasked; the host reads the keys.
    std::array<pollfd, 3> ready = {{{.fd = host_.descriptor(), .events = POLLIN},
                                    {.fd = signals_.descriptor(), .events = POLLIN},
                                    {.fd = STDIN_FILENO, .events = 0}}};
    const int count = poll(ready.data(), ready.size(), limit);
    if (count == 0 && leavesBecauseOf_) return *leavesBecauseOf_;
    if (count == 0) return HostLost{SystemError::of(ETIMEDOUT, "read from the host")};
    if (count < 0) return std::nullopt;
    if (auto end = takeLines()) return end;
    takeSignals();
    if ((ready[2].revents & (POLLHUP | POLLERR | POLLNVAL)) != 0) return Signalled{SIGHUP};
    return leavesBecauseOf_ && !isAttached_ ? std::optional<End>(*leavesBecauseOf_) : std::nullopt;
}

std::optional<ViewClient::End> ViewClient::takeLines() {
    while (true) {
        auto line = host_.lineIfThere();
        if (!line && leavesBecauseOf_) return *leavesBecauseOf_;
        if (!line) return HostLost{std::move(line.error())};
        if (!*line) return std::nullopt;
        auto reply = Json::parse(**line);
        if (!reply) return Answered{};
        const JSONObject object(*reply);
        if (object.contains("ok") && leavesBecauseOf_) return *leavesBecauseOf_;
        if (object.contains("ok")) return Answered{*std::move(reply)};
        if (!object.boolean("attached")) continue;
        isAttached_ = true;
        isPlain_ = object.boolean("plain");
        if (!leavesBecauseOf_) deadline_.reset();
    }
}

void ViewClient::takeSignals() {
    while (const auto signal = signals_.take()) {
        switch (*signal) {
            case SIGWINCH:
                tell(resizeLine);
                break;
            case SIGCONT:
                comeBack();
                break;
            case SIGTERM:
            case SIGHUP:
            case SIGINT:
            case SIGQUIT:
                leaveBecauseOf(*signal);
                break;
            default:
                break;
        }
    }
}

/// The host is asked to stop first, so that it does not draw on what was given back; the second time it is not waited
/// for.
void ViewClient::leaveBecauseOf(int signal) {
    deadline_ = Clock::now() + (leavesBecauseOf_ ? Clock::duration::zero() : leavePatience);
    leavesBecauseOf_ = Signalled{signal};
    tell(detachLine);
}

/// Somebody has stopped this process, had the terminal, and brought it back; "bg" gives no terminal.
void ViewClient::comeBack() {
    if (!isAttached_ || !loan_.isInForeground()) return;
    loan_.makeRawAgain();
    tell(redrawLine);
}

/// A host that is gone is noticed by what it no longer says.
void ViewClient::tell(std::string_view line) {
    (void)host_.send(line);
}

void ViewClient::giveBack() {
    client_.disconnect();
    if (isAttached_) {
        loan_.end(isPlain_ ? plainFarewell(client_.environment) : viewLeaveText());
    } else {
        loan_.end();
    }
}

bool ViewClient::wasUnread(const End& end) const {
    const auto* lost = std::get_if<HostLost>(&end);
    return lost != nullptr && !isAttached_ && ClientContext::wasUnread(lost->error);
}

int ViewClient::conclude(const End& end) {
    return std::visit(Overloaded{
                          [&](const Answered& answered) { return conclude(JSONObject(answered.reply)); },
                          [&](const HostLost& lost) {
                              if (isAttached_) return refuse(client_, client_.l10n.text("view.hostEnded"));
                              return client_.hostGone(lost.error);
                          },
                          [](const Signalled& signalled) { return SignalInbox::dieOf(signalled.signal), 0; },
                      },
                      end);
}

int ViewClient::conclude(const JSONObject& reply) {
    if (!reply.boolean("ok")) return client_.explain(reply.object("error"));
    const std::string_view key = textKeyOf(reply.object("result").string("reason"));
    if (!key.empty()) client_.output << client_.l10n.text(std::string(key)) << '\n';
    return CommandStatus::done;
}

}  // namespace orvane
