#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

#include "OrvaneCore/Support/Json.h"

/// Reads TOML 1.0 (https://toml.io/en/v1.0.0) as people write it into configuration files, here and there damaged.
namespace orvane::Toml {

/// In bytes.
inline constexpr std::size_t maximumSize = 1024 * 1024;
/// Levels of tables in a header, and of arrays and tables in a value.
inline constexpr std::size_t maximumDepth = 64;
inline constexpr std::size_t maximumSkippedLines = 100;

struct Document {
    /// An object, whose members keep the order of the text. Tables are objects, arrays of tables arrays of objects;
    /// dates and times are the text that stood there.
    JsonValue root;
    /// Where something begins that was skipped, counted from 1; the first hundred. A malformed line is skipped alone,
    /// with the lines of its table when it is a header. Of two values with one key the first stands.
    std::vector<std::size_t> skippedLines;
};

/// Never fails. A text that is longer than `maximumSize` is skipped whole, as from line 1.
Document read(std::string_view text);

}  // namespace orvane::Toml
