#pragma once

#include <algorithm>
#include <array>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace orvane {

/// Reads a table: a row ends with its line or with ';', its cells are set apart by '|' and lose the spaces around them.
/// A line, or its rest, is a remark when it begins with '#'.
template <std::size_t columns>
std::vector<std::array<std::string, columns>> table(std::string_view text) {
    const auto take = [](std::string_view& rest, const char* ends) {
        std::string_view part = rest.substr(0, rest.find_first_of(ends));
        rest.remove_prefix(std::min(part.size() + 1, rest.size()));
        part.remove_prefix(std::min(part.find_first_not_of(' '), part.size()));
        return part.substr(0, part.find_last_not_of(' ') + 1);
    };
    std::vector<std::array<std::string, columns>> rows;
    while (!text.empty()) {
        text.remove_prefix(std::min(text.find_first_not_of(' '), text.size()));
        std::string_view row = take(text, text.starts_with('#') ? "\n" : "\n;");
        if (row.empty() || row.starts_with('#')) continue;
        if (std::ranges::count(row, '|') + 1 != columns) throw std::invalid_argument(std::string(row));
        for (std::string& cell : rows.emplace_back())
            cell = take(row, "|");
    }
    return rows;
}

}  // namespace orvane
