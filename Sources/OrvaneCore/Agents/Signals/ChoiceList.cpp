#include "OrvaneCore/Agents/Signals/ChoiceList.h"

#include <algorithm>
#include <cstdlib>
#include <utility>

#include "OrvaneCore/Agents/Signals/ChoiceRow.h"
#include "OrvaneCore/Agents/Signals/KeyHints.h"
#include "OrvaneCore/Support/Text.h"

namespace orvane {

namespace {

constexpr std::size_t rowsBelowList = 14;  ///< hints, and what is explained of the last option
constexpr std::size_t rowsBetween = 10;    ///< what is explained of one option

struct PlacedChoice {
    ChoiceRow choice;
    std::size_t row = 0;
};

/// Rows that belong to the options around them: explanations, wrapped labels, lines that part them.
bool isBetweenOptions(const AgentRow& row, const ChoiceRow& below) {
    return !row.isText() || row.indent > below.markColumn;
}

/// The options upward from the lowest, as their numbers fall one by one.
class UpwardCollector {
 public:
    explicit UpwardCollector(AgentRowSpan rows) : rows_(rows) {}

    std::vector<PlacedChoice> collect() {
        findLowest();
        if (!found_.empty()) goUp();
        std::ranges::reverse(found_);
        return std::move(found_);
    }

 private:
    void findLowest() {
        std::size_t written = 0;
        for (std::size_t row = rows_.size(); row-- > 0 && written < rowsBelowList;) {
            if (auto choice = ChoiceRow::parse(rows_[row])) {
                found_.push_back({std::move(*choice), row});
                return;
            }
            // What stands below a message is no part of a list above it.
            if (AgentRowText::startsMessage(rows_[row]) && !AgentRowText::startsPrompt(rows_[row])) return;
            written += rows_[row].kind == AgentRow::Kind::blank ? 0 : 1;
        }
    }

    void goUp() {
        std::size_t between = 0;
        for (std::size_t row = found_.front().row; row-- > 0 && between <= rowsBetween;) {
            const ChoiceRow& below = found_.back().choice;
            if (below.option.number == 1) return;
            auto choice = ChoiceRow::parse(rows_[row]);
            if (choice && precedes(*choice, below)) {
                found_.push_back({std::move(*choice), row});
                between = 0;
            } else if (isBetweenOptions(rows_[row], below)) {
                ++between;
            } else {
                return;
            }
        }
    }

    /// The numbers of a list stand below one another ("10." begins a column earlier, or not), or its rows do.
    static bool precedes(const ChoiceRow& above, const ChoiceRow& below) {
        return above.option.number == below.option.number - 1 &&
               (std::abs(above.numberColumn - below.numberColumn) <= 1 || above.markColumn == below.markColumn);
    }

    AgentRowSpan rows_;
    std::vector<PlacedChoice> found_;
};

/// Buttons of a list to tick, which have no number.
bool isButton(const AgentRow& row) {
    std::string_view content = row.content();
    if (content.starts_with("❯")) content.remove_prefix(std::string_view("❯").size());
    content = Text::trimmed(content);
    return content == "Submit" || content == "Next" || content == "Done";
}

/// Gives an option what stands below its row: the rest of its label, then what is explained.
void readRowsBelow(PlacedChoice& placed, AgentRowSpan rows, std::size_t end) {
    PrintedOption& option = placed.choice.option;
    for (std::size_t row = placed.row + 1; row < end; ++row) {
        const AgentRow& each = rows[row];
        if (!each.isText() || each.indent < placed.choice.labelColumn - 1) return;
        const std::string more = Text::oneLine(each.content());
        if (more.empty() || isButton(each) || KeyHints::decides(more)) return;
        const bool isLabel = option.detail.empty() && AgentRowText::continues(rows[row - 1], each);
        AgentRowText::append(isLabel ? option.label : option.detail, more);
    }
}

std::optional<ChoiceList> listOf(std::vector<PlacedChoice> placed, AgentRowSpan rows) {
    if (placed.empty()) return std::nullopt;
    ChoiceList list{.options = {}, .firstRow = placed.front().row, .lastRow = placed.back().row};
    list.options.reserve(placed.size());
    for (std::size_t at = 0; at < placed.size(); ++at) {
        readRowsBelow(placed[at], rows, at + 1 < placed.size() ? placed[at + 1].row : rows.size());
        list.options.push_back(std::move(placed[at].choice.option));
    }
    return list;
}

bool isPlainOption(const AgentRow& row, const ChoiceRow& selected) {
    return row.isText() && row.indent == selected.labelColumn && !KeyHints::decides(row.text);
}

}  // namespace

bool ChoiceList::isLive() const {
    return std::ranges::count(options, true, &PrintedOption::selected) == 1;
}

int ChoiceList::selectedNumber() const {
    const auto found = std::ranges::find(options, true, &PrintedOption::selected);
    return isLive() && found != options.end() ? found->number : 0;
}

std::optional<ChoiceList> ChoiceList::numbered(AgentRowSpan rows) {
    return listOf(UpwardCollector(rows).collect(), rows);
}

std::optional<ChoiceList> ChoiceList::unnumbered(AgentRowSpan rows) {
    for (std::size_t row = rows.size(); row-- > 0 && row + rowsBelowList >= rows.size();) {
        const auto selected = ChoiceRow::parseSelected(rows[row]);
        if (!selected) continue;
        std::size_t first = row;
        while (first > 0 && isPlainOption(rows[first - 1], *selected))
            --first;
        std::size_t last = row;
        while (last + 1 < rows.size() && isPlainOption(rows[last + 1], *selected))
            ++last;
        if (first == last) return std::nullopt;
        ChoiceList list{.options = {}, .firstRow = first, .lastRow = last};
        for (std::size_t at = first; at <= last; ++at)
            list.options.push_back(at == row ? selected->option : ChoiceRow::parsePlain(rows[at]).option);
        std::erase_if(list.options, [](const PrintedOption& option) { return option.label.empty(); });
        return list;
    }
    return std::nullopt;
}

}  // namespace orvane
