#include "OrvaneShell/View/Painting/ThreadLines.h"

#include <algorithm>
#include <string_view>
#include <utility>

#include "OrvaneCore/Support/Overloaded.h"
#include "OrvaneCore/Support/Text.h"
#include "OrvaneShell/View/Painting/ViewLook.h"
#include "OrvaneShell/View/Painting/WrappedText.h"

namespace orvane::ThreadLines {

namespace {

using TranscriptFeed::Entry;
using TranscriptFeed::Role;
using TranscriptFeed::ThreadItem;

/// In characters; more of it than a screen shows.
constexpr std::size_t longestMessage = 2000;
constexpr int markCols = 2;

struct Mark {
    std::string_view glyph;
    Attribute look;
};

/// Each role has a sign of its own, so that they differ without colours.
Mark markOf(Role role) {
    switch (role) {
        case Role::user:
            return {"❯", ViewLook::bold};
        case Role::assistant:
            return {"●", ViewLook::plain};
        case Role::error:
            return {"✗", ViewLook::colored(ViewLook::red)};
        case Role::tool:
        case Role::notice:
        case Role::thinking:
            return {"·", ViewLook::dim};
    }
    std::unreachable();
}

void add(std::vector<StyledLine>& lines, const Mark& mark, std::string_view text, int cols) {
    std::string shown = Text::truncated(text, longestMessage);
    std::ranges::replace(shown, '\t', ' ');
    std::string lead = std::string(mark.glyph) + " ";
    for (const std::string& line : wrapped(shown, cols - markCols)) {
        lines.push_back({.text = lead + line, .look = mark.look});
        lead = std::string(markCols, ' ');
    }
}

std::string messageText(const Entry& entry) {
    std::string text = entry.text;
    for (const auto& attachment : entry.attachments)
        text += (text.empty() ? "[" : " [") + attachment.name + "]";
    return text;
}

/// "Read ×3, Edit", in the order of their first use.
std::string toolsText(const std::vector<Entry>& entries, const L10n& l10n) {
    std::vector<std::pair<std::string, int>> tools;
    int failures = 0;
    for (const Entry& entry : entries) {
        if (entry.role == Role::error) ++failures;
        if (!entry.tool) continue;
        const auto known = std::ranges::find(tools, *entry.tool, &std::pair<std::string, int>::first);
        if (known == tools.end()) {
            tools.emplace_back(*entry.tool, 1);
        } else {
            ++known->second;
        }
    }
    if (tools.empty()) return l10n.text("view.thread.thinking");
    std::string text;
    for (const auto& [name, count] : tools) {
        text += (text.empty() ? "" : ", ") + Text::oneLine(name);
        if (count > 1) text += " ×" + std::to_string(count);
    }
    if (failures > 0) text += " · " + l10n.plural("view.thread.failed", failures);
    return text;
}

}  // namespace

std::vector<StyledLine> of(const std::vector<Entry>& entries, const L10n& l10n, int cols) {
    std::vector<StyledLine> lines;
    for (const ThreadItem& each : TranscriptFeed::threadItems(entries)) {
        std::visit(Overloaded{[&](const ThreadItem::Single& single) {
                                  add(lines, markOf(single.entry.role), messageText(single.entry), cols);
                              },
                              [&](const ThreadItem::Activity& activity) {
                                  const auto failed = [](const Entry& entry) { return entry.role == Role::error; };
                                  const bool hasFailed = std::ranges::any_of(activity.entries, failed);
                                  const Attribute look = hasFailed ? ViewLook::colored(ViewLook::red) : ViewLook::dim;
                                  lines.push_back({.text = "▸ " + toolsText(activity.entries, l10n), .look = look});
                              },
                              [&](const ThreadItem::Agent& agent) {
                                  const std::string task = Text::oneLine(agent.entry.target.value_or(""));
                                  lines.push_back({.text = "◆ " + agent.entry.tool.value_or("") + " " + task,
                                                   .look = ViewLook::colored(ViewLook::cyan)});
                              }},
                   each.item);
    }
    return lines;
}

}  // namespace orvane::ThreadLines
