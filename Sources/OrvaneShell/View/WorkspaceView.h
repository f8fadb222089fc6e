#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "OrvaneShell/View/Input/PasteEncoder.h"
#include "OrvaneShell/View/Keys/CommandKeys.h"
#include "OrvaneShell/View/Plain/PlainView.h"
#include "OrvaneShell/View/ViewContext.h"
#include "OrvaneShell/View/ViewFrame.h"
#include "OrvaneShell/View/ViewMouse.h"
#include "OrvaneShell/View/ViewSettings.h"
#include "OrvaneShell/View/ViewTerminal.h"

namespace orvane {

/// The workspace on the terminal of one client: draws it whenever something has changed, and carries out what is typed.
/// It holds no state of the workspace. Main thread only.
class WorkspaceView {
 public:
    enum class End { detached, replaced, quit, gone };

    struct Setup {
        ViewContext::Services services;
        ViewSettings settings;
        OuterTerminal features;
        /// The user wants no colours wherever none were chosen.
        bool noColor = false;
        /// Plain lines in the place of a drawing.
        bool isPlain = false;
        /// The view is over and has written its last byte. Called once, not from within a call of this object's; may
        /// destroy it.
        std::function<void(End)> onEnd;
        std::function<void()> stopHost;
        std::function<void(const std::string& typed)> openProject;
        std::function<bool(const std::string& address)> openLink;
    };

    WorkspaceView(Setup setup, TerminalDevice device);
    ~WorkspaceView();
    WorkspaceView(const WorkspaceView&) = delete;
    WorkspaceView& operator=(const WorkspaceView&) = delete;

    /// Takes the terminal over and draws.
    void start();
    /// Draws no more. A client that cannot give its terminal back itself has it given back.
    enum class Client { waits, gone };
    void end(End end, Client client = Client::waits);
    void noteSize() { terminal_.noteSize(); }
    void redraw() { terminal_.redraw(); }
    /// What the user has chosen meanwhile.
    void apply(ViewSettings settings);
    ViewContext& context() { return context_; }
    const ViewContext& context() const { return context_; }

 private:
    void welcome();
    void take(const InputEvent& event);
    void takeKey(const KeyEvent& key);
    void takeOverlayKey(const KeyEvent& key);
    void takePaneKey(const KeyEvent& key);
    void takeMouse(const MouseEvent& mouse);
    void takePaste(const PasteEvent& paste);
    void takeFocus(const FocusEvent& focus);
    void takeReply(const ReplyEvent& reply);
    std::function<std::string(const Canvas&)> plainFrame();
    void setGround(ViewTheme::Ground ground);
    ViewTheme theme() const;
    void requestFrame(ViewTerminal::Haste haste = ViewTerminal::Haste::paced);
    void paint(Canvas& canvas);
    void noteChange();
    void noteNews(const SessionController& session, const TerminalNews& news);
    void noteFocus();
    void copy(std::string_view text);
    void ringFor(const SessionEvent& event);
    void announceStatus(const SessionEvent& event, const SessionController& session);
    bool shows(const SessionController& session) const;
    ViewTerminal::Haste hasteOf(const SessionController& session);

    Setup setup_;
    ViewTerminal terminal_;
    ViewContext context_;
    ViewFrame frame_;
    PlainView plain_;
    ViewTheme::Choice theme_ = ViewTheme::Choice::automatic;
    /// As the terminal has told.
    ViewTheme::Ground ground_ = ViewTheme::Ground::dark;
    ViewMouse mouse_;
    CommandKeys commandKeys_;
    bool hasFocus_ = true;
    bool isOver_ = false;
    /// The session whose program was told that it has the focus.
    std::optional<Uuid> focusedSession_;
    /// The session that a paste goes to, and its form.
    std::optional<Uuid> pasteTarget_;
    PasteForm pasteForm_ = PasteForm::plain;
    /// Of the pane that was typed to, so many changes are answers still.
    int answersToCome_ = 0;
    Instant lastBellAt_;
    std::string title_;
    Registration changes_;
    Registration toolChanges_;
    Registration outputs_;
    Registration news_;
    Registration events_;
    Registration ageTimer_;
    Registration holdTimer_;
};

}  // namespace orvane
