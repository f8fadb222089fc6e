#include "OrvaneShell/View/Overlays/AnswerOverlay.h"

#include <algorithm>

#include "Orvane/Agents/TerminalAgent.h"
#include "OrvaneShell/Texts/SessionTexts.h"
#include "OrvaneShell/View/CanvasPen.h"
#include "OrvaneShell/View/Painting/DialogBox.h"
#include "OrvaneShell/View/Painting/ViewLook.h"
#include "OrvaneShell/View/Painting/WrappedText.h"
#include "OrvaneShell/View/SessionQuestion.h"
#include "OrvaneShell/View/ViewContext.h"

namespace orvane {

namespace {

constexpr int answerCols = 72;
constexpr int mostQuestionRows = 8;

}  // namespace

void AnswerOverlay::paint(const ViewContext& view, Canvas& canvas) {
    const SessionController* session = view.store.session(session_);
    if (session == nullptr) return;
    const SessionQuestion question = SessionQuestion::of(*session);
    auto lines = wrapped(question.text, std::min(answerCols, canvas.cols() - 4));
    if (lines.size() > mostQuestionRows) lines.resize(mostQuestionRows);
    const auto rows = static_cast<int>(lines.size() + question.options.size());
    const CellRect inside =
        DialogBox::paint(canvas, view.l10n.text("view.answer.title", session->title()), answerCols, rows + 2);
    CanvasPen pen(canvas, inside);
    int y = inside.y;
    for (const std::string& line : lines)
        pen.text(inside.x, y++, line, ViewLook::bold);
    optionRows_ = {inside.x, y, inside.cols, static_cast<int>(question.options.size())};
    for (const SessionQuestion::Option& option : question.options) {
        pen.text(inside.x + 1, y, std::to_string(option.number), ViewLook::key);
        pen.text(inside.x + 4, y++, option.label, ViewLook::plain, inside.cols - 4);
    }
    const int last = inside.bottom() - 1;
    if (isTyping_) return words_.paint(pen, canvas, inside.x, last, inside.cols);
    pen.text(inside.x, last, refusal_, ViewLook::colored(ViewLook::red), inside.cols);
}

template <typename Act>
ViewOverlay::Next AnswerOverlay::answer(ViewContext& view, Act act) {
    SessionController* session = view.store.session(session_);
    if (session == nullptr || session->agent() == nullptr) return Next::closes;
    const std::expected<void, AnswerRefusal> done = act(session->agent()->answers());
    if (done) return Next::closes;
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
    refusal_.clear();
    if (isTyping_ && key.name == KeyName::enter) {
        isTyping_ = false;
        return answer(view, [this](AgentAnswers& answers) { return answers.answer(words_.text()); });
    }
    if (isTyping_) {
        words_.key(key);
    } else if (key.name == KeyName::enter) {
        return command(view, 'y');
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

ViewOverlay::Next AnswerOverlay::click(ViewContext& view, int x, int y) {
    const SessionController* session = view.store.session(session_);
    if (session == nullptr || !optionRows_.contains(x, y)) return Next::stays;
    const auto options = SessionQuestion::of(*session).options;
    const auto index = static_cast<std::size_t>(y - optionRows_.y);
    return index < options.size() ? answerNumber(view, options[index].number) : Next::stays;
}

ViewOverlay::Next AnswerOverlay::refresh(ViewContext& view) {
    const SessionController* session = view.store.session(session_);
    return session != nullptr && SessionQuestion::isAsked(*session) ? Next::stays : Next::closes;
}

std::string AnswerOverlay::hint(const ViewContext& view) const {
    return view.l10n.text(isTyping_ ? "view.hint.prompt" : "view.hint.answer");
}

}  // namespace orvane
