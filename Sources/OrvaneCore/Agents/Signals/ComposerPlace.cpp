#include "OrvaneCore/Agents/Signals/ComposerPlace.h"

#include <algorithm>

#include "OrvaneCore/Agents/Signals/ChoiceRow.h"
#include "OrvaneCore/Agents/Signals/Glyphs.h"
#include "OrvaneCore/Agents/Signals/KeyHints.h"
#include "OrvaneCore/Agents/Signals/TerminalComposer.h"

namespace orvane {

namespace {

constexpr int farthestMarker = 3;  ///< columns from the left edge

bool isRule(const AgentRow& row) {
    return row.kind == AgentRow::Kind::rule;
}

/// Claude Code and Gemini CLI change the marker for their modes: shell commands, notes, all allowed.
bool hasMarker(const AgentRow& row) {
    if (!row.isText() || row.indent > farthestMarker) return false;
    const std::string_view content = row.content();
    const std::string_view mark = Glyphs::first(content);
    const bool isMode = Glyphs::isOneOf(mark, {"!", "#", "*"});
    return AgentRowText::startsPrompt(row) || (isMode && (content.size() == 1 || content[1] == ' '));
}

/// Where the line below a row is.
std::optional<std::size_t> ruleBelow(AgentRowSpan rows, std::size_t row) {
    const auto found = std::find_if(rows.begin() + static_cast<std::ptrdiff_t>(row) + 1, rows.end(), isRule);
    if (found == rows.end()) return std::nullopt;
    return static_cast<std::size_t>(found - rows.begin());
}

/// Between two lines, or the upper and the lower side of a box.
std::optional<ComposerPlace> ruledPlace(AgentRowSpan rows, std::size_t row) {
    if (row == 0 || !hasMarker(rows[row]) || !isRule(rows[row - 1])) return std::nullopt;
    const auto end = ruleBelow(rows, row);
    if (!end) return std::nullopt;
    return ComposerPlace{.first = row, .end = *end};
}

/// Only in its composer does Claude Code put a no-break space behind the marker.
bool hasClaudesMarker(const std::string& row) {
    return row.contains("❯\u00A0") || row.contains(">\u00A0");
}

std::optional<ComposerPlace> claudePlace(std::span<const std::string> raw, AgentRowSpan rows) {
    for (std::size_t row = rows.size(); row-- > 0 && row + TerminalComposer::maximumRows >= rows.size();) {
        if (const auto place = ruledPlace(rows, row)) return place;
        if (hasMarker(rows[row]) && hasClaudesMarker(raw[row])) {
            return ComposerPlace{.first = row, .end = ruleBelow(rows, row).value_or(rows.size())};
        }
    }
    return std::nullopt;
}

/// A prompt that was sent is drawn between the same two lines, but the conversation goes on below it.
std::optional<ComposerPlace> geminiPlace(AgentRowSpan rows) {
    for (std::size_t row = rows.size(); row-- > 0 && row + TerminalComposer::maximumRows >= rows.size();) {
        const auto place = ruledPlace(rows, row);
        if (!place) continue;
        const auto goesOn = [](const AgentRow& each) { return AgentRowText::startsMessage(each) || each.boxes > 0; };
        return std::ranges::any_of(rows.subspan(place->end), goesOn) ? std::nullopt : place;
    }
    return std::nullopt;
}

/// The blank row before the hints at the bottom.
std::size_t blankBeforeFooter(AgentRowSpan rows, std::size_t first) {
    std::size_t row = rows.size();
    while (row > first + 1 && rows[row - 1].kind != AgentRow::Kind::blank)
        --row;
    return row > first + 1 ? row - 1 : rows.size();
}

/// The lowest "›" at the left edge with nothing but its own rows and hints below, unless it marks an option.
std::optional<ComposerPlace> codexPlace(AgentRowSpan rows) {
    for (std::size_t row = rows.size(); row-- > 0 && row + TerminalComposer::maximumRows >= rows.size();) {
        const bool isPrompt = AgentRowText::startsPrompt(rows[row]) && rows[row].indent == 0;
        if (!isPrompt && AgentRowText::startsMessage(rows[row])) return std::nullopt;
        if (!isPrompt) continue;
        const ComposerPlace place{.first = row, .end = blankBeforeFooter(rows, row)};
        const auto footer = rows.subspan(place.end);
        const auto decides = [](const AgentRow& each) { return KeyHints::decides(each.text); };
        if (std::ranges::any_of(footer, decides)) return std::nullopt;
        const auto option = ChoiceRow::parse(rows[row]);
        if (!option) return place;
        // A draft's marker is in its first row. "1. …" there is a draft when hints of a composer stand below.
        const bool isDraft = option->option.number == 1 && !footer.empty();
        return isDraft ? std::optional(place) : std::nullopt;
    }
    return std::nullopt;
}

}  // namespace

std::optional<ComposerPlace> ComposerPlace::find(SessionKind kind, std::span<const std::string> rows,
                                                 AgentRowSpan prepared) {
    switch (kind) {
        case SessionKind::claude:
            return claudePlace(rows, prepared);
        case SessionKind::codex:
            return codexPlace(prepared);
        case SessionKind::gemini:
            return geminiPlace(prepared);
        case SessionKind::shell:
        case SessionKind::service:
        case SessionKind::custom:
            return std::nullopt;
    }
    return std::nullopt;
}

std::optional<std::string> ComposerPlace::draft(std::span<const std::string> rows,
                                                const std::vector<bool>& dimmed) const {
    std::vector<bool> flags;
    flags.reserve(end - first);
    for (std::size_t row = first; row < end; ++row)
        flags.push_back(row < dimmed.size() && dimmed[row]);
    return TerminalComposer::draftOf(rows.subspan(first, end - first), flags);
}

}  // namespace orvane
