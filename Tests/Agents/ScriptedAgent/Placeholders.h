#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "ScriptedAgent/Scenario.h"

namespace orvane::scripted {

/// The value of a placeholder by its name.
using Lookup = std::function<std::string(std::string_view name)>;

/// What stands in braces in a text. Braces round anything but small letters, digits, '-' and ':' are text, as in JSON.
std::vector<std::string> placeholdersOf(std::string_view text);

/// Whether a scenario or the player gives it a value.
bool isKnownPlaceholder(const Scenario& scenario, std::string_view name);

/// All on one line, for files, commands and titles.
std::string expanded(std::string_view text, const Lookup& lookup);

/// A row of the screen; values of several lines make several rows, indented like the first. {right} and {fill:X} take
/// what is left of the cells, with spaces and with X.
std::vector<std::string> expandedRow(std::string_view text, const Lookup& lookup, int cells);

/// The rows that are shown, up to a gap or the end; `next` tells where to go on.
std::vector<std::string> expandedRows(const Rows& rows, std::size_t& next, const Lookup& lookup, int cells);

}  // namespace orvane::scripted
