#include "ScriptedAgent/Placeholders.h"

#include <algorithm>
#include <set>

#include "ScriptedAgent/Text.h"

namespace orvane::scripted {
namespace {

bool isNameByte(char byte) {
    return (byte >= 'a' && byte <= 'z') || (byte >= '0' && byte <= '9') || byte == '-' || byte == ':';
}

/// A part of a text: a placeholder's name, or text.
struct Part {
    enum class Kind : std::uint8_t { text, name };
    Kind kind = Kind::text;
    std::string_view text;
};

/// {fill:X} may hold any one character, {env:NAME} capital letters.
std::size_t nameSize(std::string_view text) {
    if (text.starts_with("fill:") || text.starts_with("env:")) {
        const std::size_t end = text.find('}');
        return end == std::string_view::npos ? 0 : end;
    }
    const auto end = std::ranges::find_if_not(text, isNameByte);
    return end != text.end() && *end == '}' && text[0] >= 'a' && text[0] <= 'z'
               ? static_cast<std::size_t>(end - text.begin())
               : 0;
}

std::vector<Part> partsOf(std::string_view text) {
    std::vector<Part> parts;
    std::size_t start = 0;
    for (std::size_t at = text.find('{'); at != std::string_view::npos; at = text.find('{', at)) {
        const std::size_t size = nameSize(text.substr(at + 1));
        if (size == 0) {
            ++at;
            continue;
        }
        parts.push_back({.text = text.substr(start, at - start)});
        parts.push_back({.kind = Part::Kind::name, .text = text.substr(at + 1, size)});
        start = at += size + 2;
    }
    parts.push_back({.text = text.substr(start)});
    return parts;
}

bool isFill(std::string_view name) {
    return name == "right" || name.starts_with("fill:");
}

std::string repeated(std::string_view glyph, int count) {
    std::string result;
    for (int index = 0; index < count; ++index)
        result += glyph;
    return result;
}

}  // namespace

std::vector<std::string> placeholdersOf(std::string_view text) {
    std::vector<std::string> names;
    for (const Part& part : partsOf(text)) {
        if (part.kind == Part::Kind::name) names.emplace_back(part.text);
    }
    return names;
}

bool isKnownPlaceholder(const Scenario& scenario, std::string_view name) {
    static const std::set<std::string_view> known = {
        "composer", "prompt", "queue", "seconds", "cwd",          "cwd-name", "cwd-slug",    "pid",    "uuid",
        "time",     "millis", "right", "home",    "prompt-shown", "typed",    "typed-lines", "checked"};
    for (const std::string_view prefix : {"pick:", "check:", "selected:", "fill:", "env:"}) {
        if (name.starts_with(prefix)) return true;
    }
    if (name.starts_with("json:")) name.remove_prefix(5);
    return known.contains(name) || scenario.variables.contains(std::string(name)) ||
           scenario.cycles.contains(std::string(name));
}

std::string expanded(std::string_view text, const Lookup& lookup) {
    std::string result;
    for (const Part& part : partsOf(text))
        result += part.kind == Part::Kind::text ? std::string(part.text) : lookup(part.text);
    return result;
}

std::vector<std::string> expandedRow(std::string_view text, const Lookup& lookup, int cells) {
    std::vector<std::string> rows(1);
    std::size_t fillPlace = std::string::npos;
    std::string_view filler = " ";
    for (const Part& part : partsOf(text)) {
        if (part.kind == Part::Kind::text) {
            rows.back() += part.text;
        } else if (isFill(part.text)) {
            fillPlace = rows.back().size();
            if (part.text != "right") filler = part.text.substr(5);
        } else {
            const int column = width(rows.back());
            const auto lines = split(lookup(part.text), '\n');
            rows.back() += lines[0];
            for (std::size_t index = 1; index < lines.size(); ++index)
                rows.push_back(std::string(column, ' ') + lines[index]);
        }
    }
    if (fillPlace <= rows.back().size()) rows.back().insert(fillPlace, repeated(filler, cells - width(rows.back())));
    return rows;
}

std::vector<std::string> expandedRows(const Rows& rows, std::size_t& next, const Lookup& lookup, int cells) {
    std::vector<std::string> result;
    while (next < rows.size()) {
        const Row& row = rows[next++];
        if (row.isGap) break;
        const bool isShown = std::ranges::all_of(row.conditions, [&](const Condition& condition) {
            return lookup(condition.name).empty() == (condition.wants == Condition::Wants::none);
        });
        if (!isShown) continue;
        for (std::string& line : expandedRow(row.text, lookup, cells))
            result.push_back(std::move(line));
    }
    return result;
}

}  // namespace orvane::scripted
