#include "OrvaneShell/View/Keys/CommandRows.h"

#include <algorithm>
#include <array>
#include <utility>

namespace orvane {

namespace {

constexpr std::array<std::pair<std::string_view, std::string_view>, 4> arrows = {
    {{"Left", "←"}, {"Down", "↓"}, {"Up", "↑"}, {"Right", "→"}}};

bool isDigit(const std::string& text) {
    return text.size() == 1 && text.front() >= '0' && text.front() <= '9';
}

/// What both begin with, up to the last blank or minus before they differ.
std::size_t commonStart(const std::vector<std::string>& keys) {
    const auto& first = keys.front();
    std::size_t length = first.size();
    for (const std::string& other : keys)
        length = std::min(length, static_cast<std::size_t>(std::ranges::mismatch(first, other).in1 - first.begin()));
    const std::size_t end = first.substr(0, length).find_last_of(" -");
    return end == std::string::npos ? 0 : end + 1;
}

/// "C-←↓↑→", "1-9", "< >".
std::string joined(const std::vector<std::string>& keys) {
    if (keys.size() < 2) return keys.empty() ? std::string() : shortKeys(keys.front());
    const std::size_t start = commonStart(keys);
    const auto isNumber = [&](const std::string& each) { return isDigit(each.substr(start)); };
    if (std::ranges::all_of(keys, isNumber)) return keys.front() + "-" + keys.back().substr(start);
    std::string text = keys.front().substr(0, start);
    std::string_view between;
    for (const std::string& each : keys) {
        const std::string last = shortKeys(each.substr(start));
        text += std::string(between) + last;
        between = std::ranges::find(arrows, last, &decltype(arrows)::value_type::second) == arrows.end() ? " " : "";
    }
    return text;
}

bool hasKeysWithoutLeader(const KeyBindings& bindings) {
    return std::ranges::any_of(bindings.all(), [](const auto& binding) { return !binding.keys.beginsWithLeader; });
}

/// The first keys of a command that begin as typed, without that beginning; empty when there are none.
std::string keysBehind(const ViewContext& view, const KeySequence& typed, const ViewCommand& command, bool isBare) {
    for (const KeySequence& keys : view.bindings.keysOf(command)) {
        if (typed.isEmpty()) {
            return isBare ? KeySequence{.keys = keys.keys}.text() : keys.shown(view.leader);
        }
        if (!typed.isStartOf(keys)) continue;
        const auto first = keys.keys.begin() + static_cast<std::ptrdiff_t>(typed.keys.size());
        return KeySequence{.keys = {first, keys.keys.end()}}.text();
    }
    return {};
}

}  // namespace

std::string shortKeys(const std::string& keys) {
    for (const auto& [name, arrow] : arrows) {
        if (!keys.ends_with(name)) continue;
        const std::size_t start = keys.size() - name.size();
        if (start > 0 && keys[start - 1] != ' ' && keys[start - 1] != '-') continue;
        return keys.substr(0, start) + std::string(arrow);
    }
    return keys;
}

std::vector<CommandRow> CommandRow::of(const ViewContext& view, const KeySequence& typed) {
    const bool isBare = !hasKeysWithoutLeader(view.bindings);
    std::vector<CommandRow> rows;
    const auto commands = ViewCommand::all();
    for (auto first = commands.begin(); first != commands.end();) {
        const auto end = std::find_if(first, commands.end(),
                                      [&](const ViewCommand& command) { return command.rowKey() != first->rowKey(); });
        std::vector<std::string> keys;
        for (const ViewCommand& command : std::span(first, end)) {
            // Locked, it is the only one.
            if (view.isLocked && command.name != "lock") continue;
            if (auto text = keysBehind(view, typed, command, isBare); !text.empty()) keys.push_back(std::move(text));
        }
        if (!keys.empty())
            rows.push_back({.group = first->group,
                            .keys = joined(keys),
                            .text = view.l10n.text(first->rowKey()),
                            .textKey = first->rowKey()});
        first = end;
    }
    return rows;
}

}  // namespace orvane
