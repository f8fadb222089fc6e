#include "OrvaneCore/Agents/Signals/ChoiceRow.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <string_view>

#include "OrvaneCore/Agents/Signals/Glyphs.h"
#include "OrvaneCore/Support/Text.h"

namespace orvane {

namespace {

using Glyphs::isOneOf;

/// Labels, in lower case, of options that open a field for words.
constexpr std::array<std::string_view, 8> freeTextLabels = {
    "type something", "chat about this", "type your answer", "type here",
    "enter a custom", "enter custom",    "write your own",   "tell claude what to change",
};

bool isSelection(std::string_view glyph) {
    return isOneOf(glyph, {"❯", "›", ">", "»", "●", "•", "▶", "►", "▸", "◉"});
}

/// Other marks: an option in force, or more options beyond the edge of the list.
bool isMark(std::string_view glyph) {
    return isSelection(glyph) || isOneOf(glyph, {"*", "✓", "✔", "↑", "↓"});
}

/// Reads a row from left to right.
class Reader {
 public:
    explicit Reader(const AgentRow& row) : whole_(row.text), rest_(row.text) {}

    int column() const { return static_cast<int>(Text::displayWidth(whole_.substr(0, whole_.size() - rest_.size()))); }
    std::size_t blanks() { return Glyphs::dropBlanks(rest_); }
    std::string_view rest() const { return rest_; }

    /// A mark and the blanks behind it.
    std::string_view mark() {
        const std::string_view glyph = Glyphs::first(rest_);
        if (!isMark(glyph) || !rest_.substr(glyph.size()).starts_with(' ')) return {};
        rest_.remove_prefix(glyph.size());
        blanks();
        return glyph;
    }

    /// "1. " or "12. "; 0 when there is none.
    int number() {
        int number = 0;
        const auto [end, error] = std::from_chars(rest_.data(), rest_.data() + rest_.size(), number);
        const auto length = static_cast<std::size_t>(end - rest_.data());
        const bool isNumber = error == std::errc() && rest_[0] != '-' && length <= 2 && number > 0;
        if (!isNumber || !rest_.substr(length).starts_with(". ")) return 0;
        rest_.remove_prefix(length + 1);
        blanks();
        return number;
    }

    /// "[ ] ", "[✔] ", "☐ ", "☒ ".
    std::optional<bool> box() {
        std::string_view after = rest_;
        const std::string_view glyph = Glyphs::first(after);
        after.remove_prefix(glyph.size());
        std::optional<bool> ticked;
        if (isOneOf(glyph, {"☐", "□", "◯"})) ticked = false;
        if (isOneOf(glyph, {"☒", "☑", "■"})) ticked = true;
        if (glyph == "[") {
            const std::string_view inside = Glyphs::first(after);
            after.remove_prefix(inside.size());
            if (after.starts_with(']')) ticked = inside != " ";
            after.remove_prefix(ticked ? 1 : 0);
        }
        if (!ticked || !after.starts_with(' ')) return std::nullopt;
        rest_ = after;
        blanks();
        return ticked;
    }

 private:
    std::string_view whole_;
    std::string_view rest_;
};

/// The label ends where two blanks begin a second column, or at the tick of the option in force.
void setTexts(PrintedOption& option, std::string_view text) {
    const std::size_t gap = text.find("  ");
    std::string label = Text::oneLine(text.substr(0, gap));
    for (const std::string_view tick : {" ✔", " ✓"}) {
        if (label.ends_with(tick)) label.erase(label.size() - tick.size());
    }
    option.detail = gap == std::string_view::npos ? "" : Text::oneLine(text.substr(gap));
    option.label = std::move(label);
    const std::string folded = Text::caseFolded(option.label);
    option.freeText = folded == "other" || std::ranges::any_of(freeTextLabels, [&](std::string_view beginning) {
                          return folded.starts_with(beginning);
                      });
}

}  // namespace

std::optional<ChoiceRow> ChoiceRow::parse(const AgentRow& row) {
    if (!row.isText()) return std::nullopt;
    Reader reader(row);
    ChoiceRow choice;
    reader.blanks();
    choice.markColumn = reader.column();
    choice.option.selected = isSelection(reader.mark());
    choice.numberColumn = reader.column();
    choice.option.number = reader.number();
    if (choice.option.number == 0) return std::nullopt;
    choice.labelColumn = reader.column();
    choice.option.isTicked = reader.box();
    setTexts(choice.option, reader.rest());
    if (choice.option.label.empty()) return std::nullopt;
    return choice;
}

std::optional<ChoiceRow> ChoiceRow::parseSelected(const AgentRow& row) {
    if (!row.isText()) return std::nullopt;
    Reader reader(row);
    reader.blanks();
    if (!isOneOf(reader.mark(), {"❯", "›", "●"})) return std::nullopt;
    ChoiceRow choice;
    choice.option.selected = true;
    choice.numberColumn = choice.labelColumn = reader.column();
    choice.option.isTicked = reader.box();
    setTexts(choice.option, reader.rest());
    if (choice.option.label.empty()) return std::nullopt;
    return choice;
}

ChoiceRow ChoiceRow::parsePlain(const AgentRow& row) {
    Reader reader(row);
    reader.blanks();
    ChoiceRow choice;
    choice.numberColumn = choice.labelColumn = reader.column();
    choice.option.isTicked = reader.box();
    setTexts(choice.option, reader.rest());
    return choice;
}

}  // namespace orvane
