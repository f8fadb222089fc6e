#pragma once

#include <optional>
#include <string>
#include <vector>

#include "OrvaneCore/Support/TomlCursor.h"

namespace orvane {

/// A string of any of the four kinds, or none when no well-formed one begins here.
std::optional<std::string> readTomlString(TomlCursor& cursor);

/// A key of one or several parts between dots, of which at most `Toml::maximumDepth` are taken; or none.
std::optional<std::vector<std::string>> readTomlKey(TomlCursor& cursor);

}  // namespace orvane
