#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace orvane {

/// "NAME=value" entries in the order in which a process is given them.
using EnvironmentEntries = std::vector<std::string>;

namespace EnvironmentList {

/// What stands before the first "="; empty for what is no entry.
std::string_view name(std::string_view entry);

/// The value of the first entry of this name.
std::optional<std::string> value(const EnvironmentEntries& entries, std::string_view name);

/// Gives a variable a value: in the place of its first entry, or at the end.
void set(EnvironmentEntries& entries, std::string_view name, std::string_view value);

/// The entries, then those of `added` whose names are not among them yet.
EnvironmentEntries merging(const EnvironmentEntries& added, EnvironmentEntries entries);

}  // namespace EnvironmentList

}  // namespace orvane
