#pragma once

#include <boost/json/fwd.hpp>
#include <boost/json/value.hpp>
#include <optional>
#include <string>
#include <string_view>

namespace orvane {

using JsonValue = boost::json::value;
using JsonArray = boost::json::array;

namespace Json {

/// Deepest nesting that is read. A pane tree nests three levels a split; what we write ourselves stays far below.
inline constexpr std::size_t maximumDepth = 2048;

/// Reads one whole JSON document (UTF-8), or none when it is malformed, nested deeper than `maximumDepth` or followed
/// by anything but white space. A number beyond the range of a double becomes the last one within. Never throws.
std::optional<JsonValue> parse(std::string_view text);

enum class Layout {
    compact,   ///< one line, for the wire
    indented,  ///< two spaces a level, for files that people open
};

/// Writes a document with the keys of every object sorted, so that equal values give equal bytes. Numbers take their
/// shortest form that reads back equal; what JSON has no number for (infinities, NaN) becomes null,
/// and malformed UTF-8 in a string becomes U+FFFD.
std::string write(const JsonValue& value, Layout layout = Layout::compact);

}  // namespace Json

}  // namespace orvane
