#include "OrvaneShell/CommandLine/Columns.h"

#include <algorithm>

#include "OrvaneCore/Support/Text.h"

namespace orvane {

namespace {

/// Leading blanks are layout and stay; the rest is cleaned.
std::string cleaned(const std::string& cell) {
    const auto indent = std::min(cell.find_first_not_of(' '), cell.size());
    return cell.substr(0, indent) + Text::oneLine(cell.substr(indent));
}

}  // namespace

std::string Columns::text() const {
    std::vector<std::vector<std::string>> rows = rows_;
    std::vector<std::size_t> widths;
    for (auto& row : rows) {
        widths.resize(std::max(widths.size(), row.size()));
        for (std::size_t column = 0; column < row.size(); ++column) {
            row[column] = cleaned(row[column]);
            widths[column] = std::max(widths[column], Text::displayWidth(row[column]));
        }
    }
    std::string result;
    for (const auto& row : rows) {
        for (std::size_t column = 0; column < row.size(); ++column) {
            result += row[column];
            if (column + 1 < row.size()) result.append(widths[column] - Text::displayWidth(row[column]) + 2, ' ');
        }
        result += '\n';
    }
    return result;
}

}  // namespace orvane
