#include "OrvaneShell/View/WorkspaceView.h"

#include <algorithm>
#include <cstdint>
#include <utility>

#include "OrvaneCore/Support/Overloaded.h"
#include "OrvaneCore/Support/Text.h"
#include "OrvaneShell/View/Commands/ViewCommands.h"
#include "OrvaneShell/View/Input/KeyEncoder.h"
#include "OrvaneShell/View/NearestColor.h"
#include "OrvaneShell/View/SessionQuestion.h"
#include "OrvaneShell/View/TracePanel.h"
#include "OrvaneShell/View/ViewCommand.h"
#include "OrvaneShell/View/ViewHints.h"
#include "OrvaneShell/View/ViewModes.h"
#include "TerminalEmulator/HeadlessTerminal.h"

namespace orvane {

namespace {

using namespace std::chrono_literals;

/// Ages are told in minutes.
constexpr Duration ageInterval = 30s;
constexpr Duration ageTolerance = 5s;
/// After so long a program that holds its change back has died on it, and its terminal shows what there is.
constexpr Duration longestHold = 1100ms;
constexpr Duration bellInterval = 200ms;
/// The echo of a key comes in one piece, what a program draws then in a few.
constexpr int answersToAKey = 3;
constexpr std::string_view welcomedKey = "view.welcomed";

}  // namespace

WorkspaceView::WorkspaceView(Setup setup, TerminalDevice device)
    : setup_(std::move(setup)),
      terminal_(setup_.services.store.loop(), std::move(device), setup_.features,
                {.onInput = [this](const InputEvent& event) { take(event); },
                 .paint = [this](Canvas& canvas) { paint(canvas); },
                 .onGone = [this] { end(End::gone); },
                 .plainFrame = plainFrame()}),
      context_(setup_.services, {.requestFrame = [this] { requestFrame(); },
                                 .detach = [this] { end(End::detached); },
                                 .stopHost = [this] { setup_.stopHost(); },
                                 .openProject = [this](const std::string& typed) { setup_.openProject(typed); },
                                 .repeat =
                                     [this] {
                                         plain_.repeat();
                                         redraw();
                                     },
                                 .openLink = [this](const std::string& address) { return setup_.openLink(address); },
                                 .copy = [this](const std::string& text) { copy(text); }}),
      frame_(setup_.isPlain ? ViewFrame::Form::plain : ViewFrame::Form::drawn) {}

WorkspaceView::~WorkspaceView() = default;

void WorkspaceView::apply(ViewSettings settings) {
    context_.l10n = settings.l10n;
    context_.leader = settings.leader;
    context_.bindings = std::move(settings.bindings);
    theme_ = settings.theme;
    noteChange();
}

/// Empty for a view that is drawn.
std::function<std::string(const Canvas&)> WorkspaceView::plainFrame() {
    if (!setup_.isPlain) return {};
    return [this](const Canvas& canvas) { return plain_.frame(context_, canvas, setup_.features.plainGlyphs); };
}

void WorkspaceView::start() {
    apply(std::move(setup_.settings));
    AppStore& store = setup_.services.store;
    changes_ = store.changed.subscribe([this] { noteChange(); });
    outputs_ = store.sessionOutput.subscribe([this](const SessionController& session) {
        if (shows(session)) terminal_.requestFrame(hasteOf(session));
    });
    news_ = store.sessionNews.subscribe(
        [this](const SessionController& session, const TerminalNews& news) { noteNews(session, news); });
    toolChanges_ = setup_.services.tools.changed.subscribe([this] { noteChange(); });
    events_ = store.sessionEvents.subscribe([this](const SessionEvent& event) { ringFor(event); });
    ageTimer_ = store.loop().every(ageInterval, ageTolerance, [this] { requestFrame(); });
    store.becameActive();
    context_.showsWelcome = !setup_.services.preferences.boolean(welcomedKey, false);
    if (context_.showsWelcome) welcome();
    terminal_.start();
    noteChange();
}

/// Once in a life.
void WorkspaceView::welcome() {
    setup_.services.preferences.setBoolean(welcomedKey, true);
    if (!setup_.isPlain) return;
    for (std::string& line : ViewHints::welcome(context_))
        plain_.announce(std::move(line));
}

void WorkspaceView::end(End end, Client client) {
    if (std::exchange(isOver_, true)) return;
    for (Registration* registration : {&changes_, &toolChanges_, &outputs_, &news_, &events_, &ageTimer_, &holdTimer_})
        registration->reset();
    if (const auto gone = std::exchange(context_.overlay, nullptr)) gone->dismissed(context_);
    context_.tracePanels.clear();
    hasFocus_ = false;
    noteFocus();
    if (client == Client::gone) {
        terminal_.giveBack();
    } else {
        terminal_.stop();
    }
    setup_.services.store.resignedActive();
    // Whoever owns this destroys it, and it may be at work further up.
    setup_.services.store.loop().post([onEnd = setup_.onEnd, end] { onEnd(end); });
}

void WorkspaceView::take(const InputEvent& event) {
    std::visit(
        Overloaded{[&](const KeyEvent& key) { takeKey(key); }, [&](const MouseEvent& mouse) { takeMouse(mouse); },
                   [&](const PasteEvent& paste) { takePaste(paste); },
                   [&](const FocusEvent& focus) { takeFocus(focus); },
                   [&](const ReplyEvent& reply) { takeReply(reply); }},
        event);
}

void WorkspaceView::takeKey(const KeyEvent& key) {
    if (std::exchange(context_.showsWelcome, false)) requestFrame();
    // Whichever key it is, a person who types does not drag any more.
    if (mouse_.cancelDrag(context_)) return requestFrame();
    const bool isUp = key.action == KeyEvent::Action::release;
    const auto taken = isUp ? CommandKeys::Taken::no : commandKeys_.take(context_, key);
    if (taken == CommandKeys::Taken::passOn) {
        for (const KeyEvent& passed : commandKeys_.passed())
            takePaneKey(passed);
    } else if (taken == CommandKeys::Taken::no && context_.overlay != nullptr) {
        if (!isUp) takeOverlayKey(key);
    } else if (taken == CommandKeys::Taken::no) {
        return takePaneKey(key);
    }
    // Whoever types a command without looking needs no list of them.
    const bool isAnswered = !setup_.isPlain || context_.typed.isEmpty();
    if (!isOver_) requestFrame(isAnswered ? ViewTerminal::Haste::prompt : ViewTerminal::Haste::paced);
}

void WorkspaceView::takeOverlayKey(const KeyEvent& key) {
    auto current = std::move(context_.overlay);
    const auto next = current->key(context_, key);
    if (next == ViewOverlay::Next::stays && context_.overlay == nullptr && !isOver_)
        context_.overlay = std::move(current);
}

void WorkspaceView::takePaneKey(const KeyEvent& key) {
    SessionController* session = context_.focusedSession();
    const bool isPress = key.action != KeyEvent::Action::release;
    if (session == nullptr) {
        const auto leaf = context_.focusedLeaf();
        const bool isFree = leaf && !context_.comingBack(*leaf);
        if (isPress && isFree && key.name == KeyName::enter) SessionCommands::launch(context_);
        return;
    }
    if (!session->isActive()) {
        if (isPress && key.name == KeyName::enter) return SessionCommands::restart(context_, *session);
        if (isPress && (key.character == 'x' || key.character == 'q')) PaneCommands::close(context_);
        return;
    }
    HeadlessTerminal* headless = session->terminal();
    if (headless == nullptr) return;
    Terminal& terminal = headless->terminal;
    const std::string bytes = encodeKey(key, terminal.modes(), terminal.keyboardMode(), terminal.keyModifiers());
    if (bytes.empty()) return;
    if (context_.selection.session() || terminal.getTopVisibleRow() != terminal.buffer().yBase()) {
        context_.selection.clear();
        terminal.scrollTo(terminal.buffer().yBase());
        requestFrame();
    }
    answersToCome_ = answersToAKey;
    session->type(bytes);
}

void WorkspaceView::takeMouse(const MouseEvent& mouse) {
    if (mouse.action == MouseEvent::Action::press) {
        context_.typed = {};
        context_.showsWelcome = false;
    }
    mouse_.take(context_, frame_.sidebar(), mouse);
}

void WorkspaceView::takePaste(const PasteEvent& paste) {
    if (context_.overlay != nullptr) {
        context_.overlay->text(context_, paste.text);
        return requestFrame();
    }
    if (paste.isFirst) {
        const SessionController* session = context_.focusedSession();
        const bool isTaken = session != nullptr && session->isActive() && session->terminal() != nullptr;
        pasteTarget_ = isTaken ? std::optional(session->id()) : std::nullopt;
        if (isTaken) pasteForm_ = pasteForm(session->terminal()->terminal.modes());
    }
    SessionController* target = pasteTarget_ ? setup_.services.store.session(*pasteTarget_) : nullptr;
    if (target == nullptr) return;
    std::string bytes(paste.isFirst ? pasteBegin(pasteForm_) : "");
    bytes += encodePaste(paste.text, pasteForm_);
    if (paste.isLast) bytes += pasteEnd(pasteForm_);
    target->type(bytes);
}

void WorkspaceView::takeFocus(const FocusEvent& focus) {
    if (hasFocus_ == focus.hasFocus) return;
    hasFocus_ = focus.hasFocus;
    if (hasFocus_) {
        setup_.services.store.becameActive();
        if (SessionController* session = context_.focusedSession()) session->clearAttention();
    } else {
        setup_.services.store.resignedActive();
    }
    noteFocus();
}

void WorkspaceView::takeReply(const ReplyEvent& reply) {
    using Ground = ViewTheme::Ground;
    const auto& values = reply.parameters;
    if (reply.kind == ReplyEvent::Kind::backgroundColor && values.size() == 3) {
        const auto part = [&](std::size_t i) { return static_cast<std::uint8_t>(std::clamp(values[i], 0, 255)); };
        setGround(NearestColor::isLight({part(0), part(1), part(2)}) ? Ground::light : Ground::dark);
    } else if (reply.kind == ReplyEvent::Kind::colorScheme && values.size() == 1) {
        setGround(values[0] == 2 ? Ground::light : Ground::dark);
    } else {
        terminal_.noteReply(reply);
    }
}

void WorkspaceView::setGround(ViewTheme::Ground ground) {
    if (std::exchange(ground_, ground) != ground) requestFrame();
}

/// What somebody has chosen for this program goes before what they want of all.
ViewTheme WorkspaceView::theme() const {
    const bool isChosen = theme_ != ViewTheme::Choice::automatic;
    return ViewTheme::of(setup_.noColor && !isChosen ? ViewTheme::Choice::none : theme_, ground_,
                         setup_.features.colors);
}

/// Tells programs when the focus comes and goes.
void WorkspaceView::noteFocus() {
    const SessionController* session = hasFocus_ ? context_.focusedSession() : nullptr;
    const auto now = session == nullptr ? std::nullopt : std::optional(session->id());
    if (now == focusedSession_) return;
    const auto tell = [&](const std::optional<Uuid>& id, Terminal::Focus focus) {
        const SessionController* told = id ? setup_.services.store.session(*id) : nullptr;
        if (told != nullptr && told->isActive() && told->terminal() != nullptr)
            told->terminal()->terminal.setFocus(focus);
    };
    tell(focusedSession_, Terminal::Focus::out);
    focusedSession_ = now;
    tell(focusedSession_, Terminal::Focus::in);
}

void WorkspaceView::noteChange() {
    if (context_.overlay != nullptr) {
        auto current = std::move(context_.overlay);
        const auto next = current->refresh(context_);
        if (next == ViewOverlay::Next::stays && context_.overlay == nullptr) context_.overlay = std::move(current);
    }
    if (context_.overlay == nullptr) {
        const InterfaceState& interface = setup_.services.store.interface();
        if (interface.confirmingQuit) {
            FrameCommands::askToQuit(context_);
        } else if (const auto closing = interface.sessionPendingClose) {
            FrameCommands::askToClose(context_, Uuid(*closing));
        }
    }
    std::erase_if(context_.tracePanels,
                  [&](const auto& panel) { return setup_.services.store.session(panel.first) == nullptr; });
    const Project* project =
        context_.project() ? setup_.services.store.workspace().project(*context_.project()) : nullptr;
    const std::string title = project == nullptr ? "Orvane" : Text::oneLine(project->name) + " - Orvane";
    if (std::exchange(title_, title) != title && !setup_.isPlain)
        terminal_.send(viewTitleText(textIn(setup_.features.plainGlyphs, title)));
    noteFocus();
    requestFrame();
}

bool WorkspaceView::shows(const SessionController& session) const {
    for (const ViewLayout::Pane& pane : context_.layout.panes) {
        if (pane.content == session.id()) return true;
    }
    return false;
}

ViewTerminal::Haste WorkspaceView::hasteOf(const SessionController& session) {
    if (answersToCome_ == 0 || context_.focusedSession() != &session) return ViewTerminal::Haste::paced;
    --answersToCome_;
    return ViewTerminal::Haste::prompt;
}

void WorkspaceView::noteNews(const SessionController& session, const TerminalNews& news) {
    std::visit(Overloaded{[&](const TerminalNews::Bell&) {
                              const Instant now = setup_.services.store.loop().now();
                              if (now - lastBellAt_ < bellInterval) return;
                              lastBellAt_ = now;
                              terminal_.send("\a");
                          },
                          [&](const TerminalNews::Clipboard& clipboard) {
                              // Only whom the user looks at may change the clipboard.
                              if (shows(session)) copy(clipboard.content);
                          },
                          [&](const TerminalNews::Notification& notification) {
                              std::string line = session.title() + ": " + notification.title;
                              if (!notification.body.empty()) line += " " + notification.body;
                              context_.say(std::move(line));
                          }},
               news.value);
}

void WorkspaceView::copy(std::string_view text) {
    if (setup_.features.positionsCursor) terminal_.send(viewClipboardText(text));
}

/// A session begins to wait for its user, who may be looking elsewhere.
void WorkspaceView::ringFor(const SessionEvent& event) {
    const SessionController* session = setup_.services.store.session(event.session);
    if (session == nullptr) return;
    const std::string line = context_.l10n.text("view.sessionCalls", session->title());
    if (event.from == "waiting") context_.unsay(line);
    if (setup_.isPlain) return announceStatus(event, *session);
    if (event.to != "waiting" || (hasFocus_ && context_.focusedSession() == session)) return;
    terminal_.send(viewNotificationText(textIn(setup_.features.plainGlyphs, line)));
    context_.say(line);
}

/// In place of the marks and titles that nobody sees.
void WorkspaceView::announceStatus(const SessionEvent& event, const SessionController& session) {
    const bool isWaiting = event.to == "waiting";
    if (!event.to) return;
    if (!isAgent(session.identity().kind) || (!isWaiting && event.from != "working")) return;
    std::string line = session.title() + ": " + context_.l10n.text("status." + *event.to);
    if (isWaiting) line += ": " + SessionQuestion::of(session).line();
    if (isWaiting) terminal_.send("\a");
    plain_.announce(std::move(line));
    requestFrame();
}

void WorkspaceView::requestFrame(ViewTerminal::Haste haste) {
    frame_.noteChange();
    terminal_.requestFrame(haste);
}

void WorkspaceView::paint(Canvas& canvas) {
    canvas.theme = theme();
    frame_.paint(context_, canvas);
    terminal_.trackMotion(ViewMouse::wantsMotion(context_));
    if (frame_.isHeldBack()) {
        holdTimer_ = setup_.services.store.loop().after(longestHold, [this] { terminal_.requestFrame(); });
    }
}

}  // namespace orvane
