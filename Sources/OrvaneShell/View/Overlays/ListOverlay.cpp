#include "OrvaneShell/View/Overlays/ListOverlay.h"

#include <algorithm>

#include "OrvaneCore/Support/Text.h"
#include "OrvaneShell/View/CanvasPen.h"
#include "OrvaneShell/View/Painting/DialogBox.h"
#include "OrvaneShell/View/Painting/ViewLook.h"
#include "OrvaneShell/View/ViewContext.h"

namespace orvane {

namespace {

constexpr int listCols = 64;
constexpr int mostRows = 18;

}  // namespace

ListOverlay::ListOverlay(const ViewContext& view, std::string title, Source source)
    : title_(std::move(title)), source_(std::move(source)) {
    take(source_(view));
}

void ListOverlay::take(std::vector<Item> items) {
    items_ = std::move(items);
    std::vector<std::string> texts;
    texts.reserve(items_.size());
    for (const Item& item : items_)
        texts.push_back(item.label + " " + item.detail);
    ranking_ = FuzzyRanking(texts);
    narrow();
}

void ListOverlay::narrow() {
    shown_ = ranking_.find(filter_.text());
    chosen_ = std::min(chosen_, shown_.empty() ? 0 : shown_.size() - 1);
}

void ListOverlay::paint(const ViewContext& view, Canvas& canvas) {
    // An empty list says so in a row.
    const int wanted = std::clamp(static_cast<int>(items_.size()), 1, mostRows) + 2;
    const CellRect inside = DialogBox::paint(canvas, title_, listCols, wanted);
    CanvasPen pen(canvas, inside);
    rows_ = {inside.x, inside.y + 2, inside.cols, std::max(0, inside.rows - 2)};
    const auto room = static_cast<std::size_t>(rows_.rows);
    first_ = std::clamp(first_, chosen_ >= room ? chosen_ + 1 - room : 0, chosen_);
    for (std::size_t row = 0; row < room && first_ + row < shown_.size(); ++row) {
        const Item& item = items_[shown_[first_ + row]];
        const bool isChosen = first_ + row == chosen_;
        const int y = rows_.y + static_cast<int>(row);
        const auto look = [&](Attribute base) { return isChosen ? ViewLook::onBar(base) : base; };
        pen.fill({rows_.x, y, rows_.cols, 1}, look(ViewLook::plain));
        const auto width = static_cast<int>(Text::displayWidth(item.detail));
        const int labelCols = rows_.cols - 4 - std::min(width, rows_.cols / 3);
        const int used = pen.text(rows_.x + 1, y, item.label, look(item.look), labelCols);
        const int limit = std::max(0, rows_.cols - used - 4);
        pen.text(rows_.right() - 1 - std::min(width, limit), y, item.detail, look(ViewLook::dim), limit);
    }
    if (shown_.empty()) pen.text(rows_.x + 1, rows_.y, view.l10n.text("view.list.nothing"), ViewLook::dim);
    const int prompt = pen.text(inside.x, inside.y, "> ", ViewLook::dim);
    filter_.paint(pen, canvas, inside.x + prompt, inside.y, inside.cols - prompt);
}

void ListOverlay::point(std::string_view label) {
    const auto found = std::ranges::find_if(shown_, [&](std::size_t item) { return items_[item].label == label; });
    if (found != shown_.end()) chosen_ = static_cast<std::size_t>(found - shown_.begin());
}

void ListOverlay::move(int by) {
    const auto count = static_cast<int>(shown_.size());
    if (count > 0) chosen_ = static_cast<std::size_t>((static_cast<int>(chosen_) + by % count + count) % count);
}

void ListOverlay::moveWithinEnds(int by) {
    const auto last = static_cast<int>(shown_.size()) - 1;
    chosen_ = static_cast<std::size_t>(std::clamp(static_cast<int>(chosen_) + by, 0, std::max(0, last)));
}

ViewOverlay::Next ListOverlay::choose(ViewContext& view) {
    if (chosen_ >= shown_.size()) return Next::stays;
    // What is chosen may open another overlay, or change the workspace and so this list.
    const auto act = items_[shown_[chosen_]].choose;
    if (items_[shown_[chosen_]].staysOpen) {
        act(view);
        take(source_(view));
        return Next::stays;
    }
    dismissed(view);
    act(view);
    return Next::closes;
}

ViewOverlay::Next ListOverlay::key(ViewContext& view, const KeyEvent& key) {
    const bool isControl = key.name == KeyName::character && key.modifiers.control;
    if (key.name == KeyName::escape || (isControl && key.character == 'c')) {
        dismissed(view);
        return Next::closes;
    }
    if (key.name == KeyName::enter) return choose(view);
    if (key.name == KeyName::up || (isControl && key.character == 'p')) {
        move(-1);
    } else if (key.name == KeyName::down || key.name == KeyName::tab || (isControl && key.character == 'n')) {
        move(1);
    } else if (key.name == KeyName::pageUp || key.name == KeyName::pageDown) {
        moveWithinEnds(std::max(1, rows_.rows) * (key.name == KeyName::pageUp ? -1 : 1));
    } else if (filter_.key(key)) {
        chosen_ = 0;
        narrow();
    }
    return Next::stays;
}

ViewOverlay::Next ListOverlay::text(ViewContext& /*view*/, const std::string& pasted) {
    filter_.insert(pasted);
    narrow();
    return Next::stays;
}

ViewOverlay::Next ListOverlay::click(ViewContext& view, int x, int y) {
    const auto row = first_ + static_cast<std::size_t>(std::max(0, y - rows_.y));
    if (!rows_.contains(x, y) || row >= shown_.size()) return Next::stays;
    chosen_ = row;
    return choose(view);
}

bool ListOverlay::wheel(ViewContext& /*view*/, int /*x*/, int /*y*/, int rows) {
    moveWithinEnds(rows);
    return true;
}

ViewOverlay::Next ListOverlay::refresh(ViewContext& view) {
    take(source_(view));
    return Next::stays;
}

void ListOverlay::dismissed(ViewContext& view) {
    if (onGone) onGone(view);
}

std::string ListOverlay::hint(const ViewContext& view) const {
    return view.l10n.text("view.hint.list");
}

}  // namespace orvane
