#include "OrvaneShell/View/Overlays/AnswerOverlay.h"

#include <algorithm>

#include "Orvane/Agents/TerminalAgent.h"
#include "OrvaneCore/Support/Text.h"
#include "OrvaneShell/Texts/SessionTexts.h"
#include "OrvaneShell/View/Painting/DialogBox.h"
#include "OrvaneShell/View/Painting/ViewLook.h"
#include "OrvaneShell/View/Painting/WrappedText.h"
#include "OrvaneShell/View/SessionQuestion.h"
#include "OrvaneShell/View/ViewContext.h"

namespace orvane {

namespace {

constexpr int answerCols = 72;
constexpr int mostQuestionRows = 8;
/// Nobody answers what came up just now; what was typed in between was for the question before.
constexpr Duration readingTime = std::chrono::milliseconds(700);

}  // namespace

std::vector<std::string> questionLines(const SessionQuestion& question, int cols) {
    auto lines = wrapped(question.text, cols);
    if (lines.size() > mostQuestionRows) lines.resize(mostQuestionRows);
    return lines;
}

void paintHeading(const ViewContext& view, CanvasPen& pen, const CellRect& row, const SessionController& session,
                  bool isChosen) {
    const Project* project = view.store.workspace().project(session.identity().projectID);
    const std::string age = SessionTexts::shortAge(view.l10n, view.now() - session.evidence().since);
    const std::string detail = (project == nullptr ? std::string() : project->name + "  ") + age;
    const Attribute look = isChosen ? ViewLook::onBar(ViewLook::bold) : ViewLook::plain;
    pen.fill(row, look);
    const int width = std::min(static_cast<int>(Text::displayWidth(detail)), row.cols / 2);
    pen.text(row.x + 1, row.y, (isChosen ? "▸ " : "  ") + session.title(), look, row.cols - width - 4);
    pen.text(row.right() - 1 - width, row.y, detail, isChosen ? look : ViewLook::dim, width);
}

int rowsOf(const SessionQuestion& question, int cols) {
    return static_cast<int>(questionLines(question, cols).size() + question.options.size());
}

void AnswerOverlay::paint(const ViewContext& view, Canvas& canvas) {
    headings_.clear();
    if (scope_ == Scope::all) return paintAll(view, canvas, asking(view));
    if (const SessionController* session = view.store.session(session_)) paintOne(view, canvas, *session);
}

void AnswerOverlay::paintOne(const ViewContext& view, Canvas& canvas, const SessionController& session) {
    const int cols = std::min(answerCols, canvas.cols() - 4);
    const int rows = rowsOf(SessionQuestion::of(session), cols);
    const CellRect inside =
        DialogBox::paint(canvas, view.l10n.text("view.answer.title", session.title()), answerCols, rows + 2);
    CanvasPen pen(canvas, inside);
    paintQuestion(pen, inside, session);
    paintLastRow(pen, canvas, inside);
}

void AnswerOverlay::paintAll(const ViewContext& view, Canvas& canvas, const std::vector<SessionController*>& sessions) {
    const int cols = std::min(answerCols, canvas.cols() - 4);
    int rows = static_cast<int>(sessions.size()) + 2;
    for (const SessionController* session : sessions) {
        if (session->id() == session_) rows += rowsOf(SessionQuestion::of(*session), cols - 2) + 1;
    }
    const auto count = static_cast<long long>(sessions.size());
    const CellRect inside = DialogBox::paint(canvas, view.l10n.plural("view.calls", count), answerCols, rows);
    CanvasPen pen(canvas, inside);
    const auto chosen = std::ranges::find(sessions, session_, &SessionController::id) - sessions.begin();
    // What stands below the chosen one matters least when there is no room.
    const int unfolded = rows - static_cast<int>(sessions.size());
    const auto first = std::max<std::ptrdiff_t>(0, chosen + unfolded - inside.rows);
    int y = inside.y;
    for (auto each = sessions.begin() + first; each != sessions.end() && y < inside.bottom() - 1; ++each) {
        const bool isChosen = (*each)->id() == session_;
        headings_.emplace_back(y, (*each)->id());
        paintHeading(view, pen, {inside.x, y++, inside.cols, 1}, **each, isChosen);
        if (isChosen) y = paintQuestion(pen, {inside.x + 2, y, inside.cols - 2, inside.bottom() - 1 - y}, **each) + 1;
    }
    paintLastRow(pen, canvas, inside);
}

/// Returns the row below it.
int AnswerOverlay::paintQuestion(CanvasPen& pen, const CellRect& room, const SessionController& session) {
    const SessionQuestion question = SessionQuestion::of(session);
    int y = room.y;
    for (const std::string& line : questionLines(question, room.cols))
        pen.text(room.x, y++, line, ViewLook::bold);
    optionRows_ = {room.x, y, room.cols, static_cast<int>(question.options.size())};
    for (const SessionQuestion::Option& option : question.options) {
        pen.text(room.x + 1, y, std::to_string(option.number), ViewLook::key);
        pen.text(room.x + 4, y++, option.label, ViewLook::plain, room.cols - 4);
    }
    return y;
}

void AnswerOverlay::paintLastRow(CanvasPen& pen, Canvas& canvas, const CellRect& inside) {
    const int last = inside.bottom() - 1;
    pen.fill({inside.x, last, inside.cols, 1}, ViewLook::plain);
    if (isTyping_) return words_.paint(pen, canvas, inside.x, last, inside.cols);
    pen.text(inside.x, last, refusal_, ViewLook::colored(ViewLook::red), inside.cols);
}

/// Who has waited longest comes first.
std::vector<SessionController*> AnswerOverlay::asking(const ViewContext& view) const {
    std::vector<SessionController*> sessions;
    for (const auto& session : view.store.sessions()) {
        if (SessionQuestion::isAsked(*session)) sessions.push_back(session.get());
    }
    std::ranges::stable_sort(sessions, {}, [](const SessionController* each) { return each->evidence().since; });
    return sessions;
}

void AnswerOverlay::move(const ViewContext& view, int by) {
    const auto sessions = asking(view);
    if (scope_ != Scope::all || sessions.empty()) return;
    const auto count = static_cast<std::ptrdiff_t>(sessions.size());
    const auto at = std::ranges::find(sessions, session_, &SessionController::id) - sessions.begin();
    session_ = sessions[static_cast<std::size_t>((at + by + count) % count)]->id();
    refusal_.clear();
    readUntil_ = {};
}

template <typename Act>
ViewOverlay::Next AnswerOverlay::answer(ViewContext& view, Act act) {
    SessionController* session = view.store.session(session_);
    if (session == nullptr || session->agent() == nullptr) return Next::closes;
    const std::expected<void, AnswerRefusal> done = act(session->agent()->answers());
    if (done) return scope_ == Scope::one ? Next::closes : refresh(view);
    refusal_ = SessionTexts::answerRefusal(view.l10n, done.error(), *session->agent());
    return Next::stays;
}

ViewOverlay::Next AnswerOverlay::answerNumber(ViewContext& view, int number) {
    return answer(view, [number](AgentAnswers& answers) { return answers.answer(std::to_string(number)); });
}

ViewOverlay::Next AnswerOverlay::command(ViewContext& view, char32_t letter) {
    if (letter >= '1' && letter <= '9') return answerNumber(view, static_cast<int>(letter - '0'));
    switch (letter) {
        case 'y':
            return answer(view, [](AgentAnswers& answers) { return answers.approve(); });
        case 'n':
            return answer(view, [](AgentAnswers& answers) { return answers.deny(); });
        case 't':
            isTyping_ = true;
            return Next::stays;
        case 'g':
            view.store.selectSession(session_);
            return Next::closes;
        case 'q':
            return Next::closes;
        default:
            return Next::stays;
    }
}

ViewOverlay::Next AnswerOverlay::key(ViewContext& view, const KeyEvent& key) {
    if (key.name == KeyName::escape || (key.modifiers.control && key.character == 'c')) {
        return std::exchange(isTyping_, false) ? Next::stays : Next::closes;
    }
    if (!isTyping_ && (key.name == KeyName::up || key.name == KeyName::down || key.name == KeyName::tab)) {
        move(view, key.name == KeyName::up || key.modifiers.shift ? -1 : 1);
        return Next::stays;
    }
    if (view.store.loop().now() < readUntil_) return Next::stays;
    refusal_.clear();
    if (isTyping_ && key.name == KeyName::enter) {
        isTyping_ = false;
        return answer(view, [this](AgentAnswers& answers) { return answers.answer(words_.text()); });
    }
    if (isTyping_) {
        words_.key(key);
    } else if (key.name == KeyName::enter) {
        return command(view, scope_ == Scope::one ? 'y' : 'g');
    } else if (key.name == KeyName::character && !key.modifiers.control && !key.modifiers.alt) {
        return command(view, key.character);
    }
    return Next::stays;
}

ViewOverlay::Next AnswerOverlay::text(ViewContext& /*view*/, const std::string& pasted) {
    isTyping_ = true;
    words_.insert(pasted);
    return Next::stays;
}

bool AnswerOverlay::wheel(ViewContext& view, int /*x*/, int /*y*/, int rows) {
    move(view, rows < 0 ? -1 : 1);
    return scope_ == Scope::all;
}

ViewOverlay::Next AnswerOverlay::click(ViewContext& view, int x, int y) {
    for (const auto& [row, id] : headings_) {
        if (row == y) session_ = id;
    }
    if (view.store.loop().now() < readUntil_) return Next::stays;
    const SessionController* session = view.store.session(session_);
    if (session == nullptr || !optionRows_.contains(x, y)) return Next::stays;
    const auto options = SessionQuestion::of(*session).options;
    const auto index = static_cast<std::size_t>(y - optionRows_.y);
    return index < options.size() ? answerNumber(view, options[index].number) : Next::stays;
}

ViewOverlay::Next AnswerOverlay::refresh(ViewContext& view) {
    const SessionController* session = view.store.session(session_);
    if (session != nullptr && SessionQuestion::isAsked(*session)) return Next::stays;
    const auto others = scope_ == Scope::all ? asking(view) : std::vector<SessionController*>();
    if (others.empty()) return Next::closes;
    // What is being typed was meant for the one that is answered now.
    isTyping_ = false;
    words_ = LineEditor();
    refusal_.clear();
    session_ = others.front()->id();
    readUntil_ = view.store.loop().now() + readingTime;
    return Next::stays;
}

std::string AnswerOverlay::hint(const ViewContext& view) const {
    if (isTyping_) return view.l10n.text("view.hint.prompt");
    return view.l10n.text(scope_ == Scope::all ? "view.hint.waiting" : "view.hint.answer");
}

}  // namespace orvane
