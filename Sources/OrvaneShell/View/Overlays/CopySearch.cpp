#include "OrvaneShell/View/Overlays/CopySearch.h"

#include <algorithm>
#include <array>
#include <utility>

#include "OrvaneCore/Support/Text.h"
#include "OrvaneShell/View/Input/KeyText.h"
#include "OrvaneShell/View/Painting/ViewLook.h"
#include "TerminalEmulator/Selection/TextMotion.h"

namespace orvane {

namespace {

constexpr std::size_t termsKept = 50;

struct Option {
    char32_t letter = 0;  ///< with Alt
    bool SearchOptions::* value = nullptr;
    const char* textKey = nullptr;
};
constexpr std::array options = {
    Option{'c', &SearchOptions::caseSensitive, "view.search.case"},
    Option{'w', &SearchOptions::wholeWord, "view.search.word"},
    Option{'r', &SearchOptions::regex, "view.search.regex"},
};

CopySearch::Toward opposite(CopySearch::Toward toward) {
    return toward == CopySearch::Toward::older ? CopySearch::Toward::newer : CopySearch::Toward::older;
}

bool isAlt(const KeyEvent& key, char32_t letter) {
    return KeyPattern{.character = letter, .modifiers = {.alt = true}}.matches(key);
}

void keepTerm(ViewContext& view, const std::string& term) {
    std::erase(view.searchTerms, term);
    view.searchTerms.push_back(term);
    if (view.searchTerms.size() > termsKept) view.searchTerms.erase(view.searchTerms.begin());
}

/// A hit is told from the text by an underline, the current one by reverse video too: neither needs a colour.
void mark(CanvasPen& pen, const CellRect& body, const SearchResult& hit, int top, ViewLook::Style style) {
    for (int row = std::max(hit.start.row, top); row <= std::min(hit.end.row, top + body.rows - 1); ++row) {
        const int startCol = row == hit.start.row ? hit.start.col : 0;
        const int endCol = std::min(row == hit.end.row ? hit.end.col : body.cols, body.cols);
        pen.restyle({body.x + startCol, body.y + row - top, endCol - startCol, 1}, [style](Attribute look) {
            look.style = look.style | style;
            look.underlineStyle = Attribute::UnderlineStyle::single;
            return look;
        });
    }
}

}  // namespace

void CopySearch::begin(const Terminal& terminal, const CopyCursor& cursor, Toward toward) {
    isTyping_ = true;
    toward_ = toward;
    editor_ = LineEditor();
    refusal_.clear();
    recalled_ = 0;
    origin_ = cursor;
    originTop_ = terminal.getTopVisibleRow() + static_cast<std::int64_t>(terminal.buffer().linesTop());
}

void CopySearch::key(ViewContext& view, Terminal& terminal, CopyCursor& cursor, const KeyEvent& key) {
    if (key.name == KeyName::escape || (key.modifiers.control && key.character == 'c')) {
        giveUp(terminal, cursor);
    } else if (key.name == KeyName::enter) {
        accept(view, terminal, cursor);
    } else if (key.name == KeyName::up || key.name == KeyName::down) {
        recall(view, key.name == KeyName::up ? 1 : -1);
        typed(terminal, cursor);
    } else if (toggle(key) || editor_.key(key)) {
        typed(terminal, cursor);
    }
}

void CopySearch::text(Terminal& terminal, CopyCursor& cursor, const std::string& pasted) {
    editor_.insert(pasted);
    typed(terminal, cursor);
}

bool CopySearch::toggle(const KeyEvent& key) {
    const auto* const option =
        std::ranges::find_if(options, [&](const Option& each) { return isAlt(key, each.letter); });
    if (option == options.end()) return false;
    options_.*option->value = !(options_.*option->value);
    return true;
}

/// The terms of earlier searches, the newest first, and behind them an empty line.
void CopySearch::recall(const ViewContext& view, int step) {
    const auto count = static_cast<std::ptrdiff_t>(view.searchTerms.size());
    recalled_ =
        static_cast<std::size_t>(std::clamp<std::ptrdiff_t>(static_cast<std::ptrdiff_t>(recalled_) + step, 0, count));
    editor_ = LineEditor(recalled_ == 0 ? std::string() : view.searchTerms[view.searchTerms.size() - recalled_]);
}

void CopySearch::typed(Terminal& terminal, CopyCursor& cursor) {
    const std::string before = std::exchange(term_, editor_.text());
    if (find(terminal, cursor, toward_, origin_->at(terminal))) return;
    if (!refusal_.empty()) {  // half a pattern: the hits of what it was stay
        term_ = before;
        return;
    }
    hit_.reset();
    cursor = *origin_;
    terminal.scrollTo(static_cast<int>(originTop_ - static_cast<std::int64_t>(terminal.buffer().linesTop())));
}

void CopySearch::accept(ViewContext& view, Terminal& terminal, CopyCursor& cursor) {
    if (editor_.text().empty()) {
        isTyping_ = false;
        return next(view, terminal, cursor, Course::on);
    }
    if (!refusal_.empty()) return;
    isTyping_ = false;
    keepTerm(view, term_);
    if (!hit_) view.say(view.l10n.text("view.history.notFound", term_));
}

void CopySearch::giveUp(Terminal& terminal, CopyCursor& cursor) {
    isTyping_ = false;
    term_.clear();
    hit_.reset();
    hitCount_ = 0;
    cursor = *origin_;
    terminal.scrollTo(static_cast<int>(originTop_ - static_cast<std::int64_t>(terminal.buffer().linesTop())));
}

void CopySearch::next(ViewContext& view, Terminal& terminal, CopyCursor& cursor, Course course) {
    if (term_.empty() && !view.searchTerms.empty()) term_ = view.searchTerms.back();
    if (!term_.empty()) goOn(view, terminal, cursor, course == Course::on ? toward_ : opposite(toward_));
}

void CopySearch::searchWord(ViewContext& view, Terminal& terminal, CopyCursor& cursor, Toward toward) {
    const std::string name = TextMotion(terminal.buffer(), terminal.clusters()).nameAt(cursor.at(terminal));
    if (name.empty()) return;
    term_ = name;
    options_ = {.caseSensitive = options_.caseSensitive, .wholeWord = true};
    toward_ = toward;
    keepTerm(view, name);
    goOn(view, terminal, cursor, toward);
}

void CopySearch::goOn(ViewContext& view, Terminal& terminal, CopyCursor& cursor, Toward toward) {
    if (!find(terminal, cursor, toward, cursor.at(terminal))) {
        const std::string why = refusal_.empty() ? view.l10n.text("view.history.notFound", term_)
                                                 : view.l10n.text("view.search.refused", refusal_);
        return view.say(why);
    }
    if (service(terminal).state().hasWrapped) view.say(count() + "  " + view.l10n.text("view.search.cameRound"));
}

SearchService& CopySearch::service(const Terminal& terminal) {
    if (service_ == nullptr) service_ = std::make_unique<SearchService>(terminal.buffer(), terminal.clusters());
    // A program may have gone to its other screen since.
    if (std::exchange(buffer_, &terminal.buffer()) != &terminal.buffer()) service_->setBuffer(terminal.buffer());
    return *service_;
}

bool CopySearch::find(Terminal& terminal, CopyCursor& cursor, Toward toward, Position from) {
    SearchService& search = service(terminal);
    refusal_.clear();
    const bool isNewer = toward == Toward::newer;
    search.startAt(isNewer ? Position{.row = from.row, .col = from.col + 1} : from);
    const auto found = isNewer ? search.findNext(term_, options_) : search.findPrevious(term_, options_);
    if (!found) {
        refusal_ = found.error().message;
        return false;
    }
    hit_ = *found;
    countHits(terminal);
    if (!hit_) return false;
    cursor.jump(terminal, hit_->start);
    return true;
}

void CopySearch::countHits(const Terminal& terminal) {
    hitNumber_ = hitCount_ = 0;
    areMoreHits_ = false;
    if (!hit_) return;
    const auto all = service(terminal).findAll(term_, options_);
    if (!all) return;
    hitCount_ = all->hits.size();
    areMoreHits_ = all->isTruncated;
    const auto place = std::ranges::find(all->hits, hit_->start, &SearchResult::start);
    if (place != all->hits.end()) hitNumber_ = static_cast<std::size_t>(place - all->hits.begin()) + 1;
}

std::string CopySearch::hitText(const Terminal& terminal, const CopyCursor& cursor) const {
    if (!hit_ || service_ == nullptr || buffer_ != &terminal.buffer()) return {};
    const auto hit = service_->located(*hit_);
    return hit && hit->start == cursor.at(terminal) ? hit->text : std::string();
}

std::string CopySearch::count() const {
    if (!hit_ || hitCount_ == 0) return {};
    const std::string total = std::to_string(hitCount_) + (areMoreHits_ ? "+" : "");
    return hitNumber_ == 0 ? total : std::to_string(hitNumber_) + "/" + total;
}

void CopySearch::paintHits(CanvasPen& pen, const CellRect& body, const Terminal& terminal) {
    if (term_.empty() || !hit_) return;
    SearchService& search = service(terminal);
    const int top = terminal.getTopVisibleRow();
    const auto shown = search.findWithin(term_, options_, top, top + body.rows - 1);
    if (!shown) return;
    const auto current = search.located(*hit_);
    for (const SearchResult& hit : shown->hits) {
        const bool isCurrent = current && current->start == hit.start;
        mark(pen, body, hit, top,
             isCurrent ? ViewLook::Style::underline | ViewLook::Style::inverse | ViewLook::Style::bold
                       : ViewLook::Style::underline);
    }
}

void CopySearch::paintRow(const ViewContext& view, CanvasPen& pen, Canvas& canvas, const CellRect& row) const {
    pen.fill(row, ViewLook::plain);
    const std::string_view arrow = toward_ == Toward::older ? " ↑ " : " ↓ ";
    const std::string label = view.l10n.text("view.history.search") + std::string(arrow);
    const int start = row.x + pen.text(row.x, row.y, label, ViewLook::bold, row.cols / 3);
    int end = row.right();
    const auto right = [&](const std::string& text, const Attribute& look) {
        end -= static_cast<int>(Text::displayWidth(text)) + 1;
        pen.text(end, row.y, text, look);
    };
    constexpr int colsForKeys = 90;
    for (auto option = options.rbegin(); option != options.rend(); ++option) {
        const bool isOn = options_.*option->value;
        const std::string name = view.l10n.text(option->textKey);
        right(isOn ? "[" + name + "]" : " " + name + " ", isOn ? ViewLook::selected : ViewLook::dim);
        if (row.cols >= colsForKeys) right("M-" + std::string(1, static_cast<char>(option->letter)), ViewLook::key);
    }
    const std::string state = !refusal_.empty()        ? view.l10n.text("view.search.refused", refusal_)
                              : editor_.text().empty() ? std::string()
                              : hit_                   ? count()
                                                       : view.l10n.text("view.search.none");
    constexpr int colsForTerm = 12;
    const int stateCols =
        std::clamp(static_cast<int>(Text::displayWidth(state)), 0, std::max(0, end - start - colsForTerm));
    end -= stateCols + 1;
    pen.text(end, row.y, state, refusal_.empty() ? ViewLook::plain : ViewLook::bold, stateCols);
    editor_.paint(pen, canvas, start, row.y, std::max(1, end - start - 1));
}

}  // namespace orvane
