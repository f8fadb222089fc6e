#include "OrvaneCore/Agents/Signals/AgentLayout.h"

#include <algorithm>

#include "OrvaneCore/Agents/Signals/KeyHints.h"

namespace orvane {

namespace {

bool isBlank(const std::string& row) {
    return row.find_first_not_of(' ') == std::string::npos;
}

}  // namespace

AgentLayout AgentLayout::of(SessionKind kind, std::span<const std::string> rows, int columns) {
    AgentLayout layout;
    while (!rows.empty() && isBlank(rows.back()))
        rows = rows.first(rows.size() - 1);
    const std::size_t count = std::min(rows.size(), kind == SessionKind::codex ? codexDialogRows : dialogRows);
    layout.firstRead_ = rows.size() - count;
    rows = rows.last(count);
    layout.rows = AgentRowText::reading(rows, columns);
    layout.composer = ComposerPlace::find(kind, rows, layout.rows);
    const auto unnumbered =
        kind == SessionKind::codex ? PrintedDialog::Unnumbered::ignored : PrintedDialog::Unnumbered::taken;
    layout.dialog = PrintedDialog::find(layout.rows, unnumbered);
    if (!layout.composer || !layout.dialog) return layout;
    // The list of a draft or of an answer is no dialog; one that stands below what looks like a composer is.
    const bool isBelow = layout.dialog->list.firstRow >= layout.composer->end;
    isBelow ? layout.composer.reset() : layout.dialog.reset();
    return layout;
}

std::optional<std::string> AgentLayout::draft(std::span<const std::string> given,
                                              const std::vector<bool>& dimmed) const {
    if (!composer) return std::nullopt;
    const ComposerPlace place{.first = firstRead_ + composer->first, .end = firstRead_ + composer->end};
    return place.draft(given, dimmed);
}

bool AgentLayout::endsInDecisionHint() const {
    return !composer && !rows.empty() && KeyHints::decides(rows.back().text);
}

AgentRowSpan AgentLayout::aboveComposer(std::size_t maximum) const {
    const AgentRowSpan above = AgentRowSpan(rows).first(composer ? composer->first : rows.size());
    std::size_t begin = above.size();
    for (std::size_t written = 0; begin > 0 && written < maximum; --begin)
        written += above[begin - 1].isText() ? 1 : 0;
    return above.subspan(begin);
}

AgentRowSpan AgentLayout::belowComposer() const {
    return composer ? AgentRowSpan(rows).subspan(composer->end) : AgentRowSpan();
}

}  // namespace orvane
