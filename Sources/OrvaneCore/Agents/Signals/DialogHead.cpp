#include "OrvaneCore/Agents/Signals/DialogHead.h"

#include <algorithm>
#include <array>
#include <utility>
#include <vector>

#include "OrvaneCore/Agents/Signals/Glyphs.h"
#include "OrvaneCore/Support/Regex.h"
#include "OrvaneCore/Support/Text.h"

namespace orvane {

namespace {

constexpr std::size_t maximumHeadRows = 40;
constexpr std::size_t maximumHeading = 60;  ///< characters; what is longer is a sentence

/// A line of text as it was before it was wrapped.
struct Line {
    std::string text;
    int boxes = 0;
    std::size_t paragraph = 0;
};

struct Head {
    std::vector<Line> lines;
    bool hasEdge = false;  ///< its upper side is in sight; else what is above it may not belong to it
};

/// The first row of what belongs to the dialog: below the line, the box or the message above it.
std::pair<std::size_t, bool> beginOf(AgentRowSpan rows, std::size_t firstOption) {
    const int boxes = rows[firstOption].boxes;
    std::size_t begin = firstOption;
    while (begin > 0 && firstOption - begin < maximumHeadRows) {
        const AgentRow& above = rows[begin - 1];
        const bool isEdge = above.kind == AgentRow::Kind::rule && (above.boxes < boxes || boxes == 0);
        if (isEdge || above.boxes < boxes) return {begin, true};
        if (AgentRowText::startsMessage(above)) return {begin, false};
        --begin;
    }
    return {begin, false};
}

Head headOf(AgentRowSpan rows, std::size_t firstOption) {
    const auto [begin, hasEdge] = beginOf(rows, firstOption);
    Head head{.lines = {}, .hasEdge = hasEdge};
    std::size_t paragraph = 0;
    for (std::size_t row = begin; row < firstOption; ++row) {
        if (!rows[row].isText()) {
            ++paragraph;
            continue;
        }
        const std::string text = Text::oneLine(rows[row].content());
        if (text.empty()) continue;
        const bool goesOn = row > begin && AgentRowText::continues(rows[row - 1], rows[row]) && !head.lines.empty();
        if (goesOn) AgentRowText::append(head.lines.back().text, text);
        if (!goesOn) head.lines.push_back({.text = text, .boxes = rows[row].boxes, .paragraph = paragraph});
    }
    return head;
}

bool isTabs(std::string_view text) {
    return text.starts_with("←") || text.starts_with("☐") || text.starts_with("☒");
}

int countOf(std::string_view text, std::string_view glyph) {
    int count = 0;
    for (std::size_t at = text.find(glyph); at != std::string_view::npos; at = text.find(glyph, at + glyph.size()))
        ++count;
    return count;
}

/// "←  ☒ Colour  ☐ Targets  ✔ Submit  →". The tab in sight has no mark of its own in the text. Questions come in their
/// order, so an answered one is the last that was answered, an open one the first that is not.
void readTabs(DialogHead& head, std::string_view tabs, DialogHead::Answered answered) {
    const int open = countOf(tabs, "☐") + countOf(tabs, "□");
    const int done = countOf(tabs, "☒") + countOf(tabs, "■");
    if (open + done < 2) return;
    head.questionCount = open + done;
    const int index = answered == DialogHead::Answered::yes ? done : done + 1;
    if (index >= 1 && index <= open + done) head.questionIndex = index;
}

int numberIn(const Regex::Match& match, std::size_t group) {
    return std::stoi(std::string(match.groups[group]->text));
}

/// "Question 1/2 (2 unanswered)".
bool readCount(DialogHead& head, const std::string& text) {
    static const Regex counted = *Regex::compile(R"(^Question\s+([0-9]{1,4})/([0-9]{1,4}))");
    const auto match = counted.firstMatch(text);
    if (!match) return false;
    head.questionIndex = numberIn(*match, 1);
    head.questionCount = numberIn(*match, 2);
    return true;
}

/// What a dialog tells beside its question: facts with a name, a command, changed lines, answers of a review.
bool isBeside(const std::string& text) {
    static const Regex beside = *Regex::compile(
        R"(^(?:\$ |[A-Z][A-Za-z]*(?: [a-z]+)?: \S|thread:|environment:|add notes$|\d+ *[+-]|● |→ |↳ |└ |⎿ |\? |tip: ))",
        {.ignoresCase = false});
    static const Regex toolUse = *Regex::compile(R"(^tool use$)", {.ignoresCase = true});
    return beside.matches(text) || toolUse.matches(text);
}

bool endsAsQuestion(std::string_view text) {
    return text.ends_with('?') || text.ends_with("？");
}

bool asksForConsent(const std::string& text) {
    static const Regex consent = *Regex::compile(
        R"(\b(?:do you want|would you like|do you trust)\b|^(?:allow|apply|trust|run|proceed|continue)\b)",
        {.ignoresCase = true});
    return endsAsQuestion(text) && consent.matches(text);
}

class QuestionFinder {
 public:
    QuestionFinder(const Head& head, int boxes) : head_(head) {
        for (const Line& line : head.lines) {
            // What stands in a box within the dialog is shown, not asked.
            if (line.boxes <= boxes) lines_.push_back(&line);
        }
    }

    const Line* find() const {
        if (const Line* line = lowest([](const Line& each) { return asksForConsent(each.text); })) return line;
        if (const Line* line = lowest([this](const Line& each) { return endsAsQuestion(each.text) && !isShown(each); }))
            return line;
        const Line* line = plainLine();
        return line != nullptr || lines_.empty() ? line : lines_.back();
    }

 private:
    template <typename Fits>
    const Line* lowest(Fits fits) const {
        const auto found = std::find_if(lines_.rbegin(), lines_.rend(), [&](const Line* line) { return fits(*line); });
        return found == lines_.rend() ? nullptr : *found;
    }

    /// Of a paragraph that begins as a command does, all lines are its.
    bool isShown(const Line& line) const {
        const auto first = std::ranges::find(lines_, line.paragraph, [](const Line* each) { return each->paragraph; });
        return isBeside(line.text) || (*first)->text.starts_with("$ ");
    }

    /// Without a question mark at an end: a sentence with one inside, else the first line of what has no title line of
    /// its own above it.
    const Line* plainLine() const {
        const auto inside = [this](const Line& each) { return each.text.contains("? ") && !isShown(each); };
        if (const Line* line = lowest(inside)) return line;
        const Line* last = lowest([this](const Line& each) { return !isShown(each); });
        if (last == nullptr || !head_.hasEdge) return last;
        const auto first = std::ranges::find_if(lines_, [this](const Line* each) { return !isShown(*each); });
        return *first;
    }

    const Head& head_;
    std::vector<const Line*> lines_;
};

/// "Trust this folder? Codex can read…" asks only in its first sentence.
std::string questionOf(const std::string& text) {
    if (endsAsQuestion(text)) return text;
    const std::size_t mark = text.find("? ");
    return mark == std::string::npos ? text : text.substr(0, mark + 1);
}

/// "? Shell  echo hello" names a tool.
std::string headingOf(std::string text) {
    static const Regex tool = *Regex::compile(R"(^\? (\S+))");
    if (const auto match = tool.firstMatch(text)) return std::string(match->groups[1]->text);
    if (text.ends_with(':')) text.pop_back();
    return Text::characterCount(text) <= maximumHeading ? text : std::string();
}

std::string findHeading(const Head& head, const Line& question) {
    const auto at = static_cast<std::size_t>(&question - head.lines.data());
    if (at == 0) return {};
    if (head.hasEdge) return headingOf(head.lines.front().text);
    const Line& above = head.lines[at - 1];
    return above.paragraph == question.paragraph ? headingOf(above.text) : std::string();
}

}  // namespace

DialogHead DialogHead::above(AgentRowSpan rows, std::size_t firstOption, Answered answered) {
    DialogHead result;
    Head head = headOf(rows, firstOption);
    std::erase_if(head.lines, [&](const Line& line) {
        if (!isTabs(line.text)) return readCount(result, line.text);
        readTabs(result, line.text, answered);
        return true;
    });
    if (const Line* question = QuestionFinder(head, rows[firstOption].boxes).find()) {
        result.question = questionOf(question->text);
        result.heading = findHeading(head, *question);
    }
    return result;
}

}  // namespace orvane
