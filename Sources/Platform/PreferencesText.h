#pragma once

#include <cstdint>
#include <expected>
#include <map>
#include <optional>
#include <string>
#include <string_view>

/// The text of a preferences file: one JSON object, its values kept as the text they are written in, so that what
/// another program or a person wrote there (a number with forty digits, a nested object) stays what it is.
namespace orvane::PreferencesText {

/// By key: the value as JSON text on one line.
using Members = std::map<std::string, std::string, std::less<>>;
using Counts = std::map<std::string, std::int64_t>;
using Texts = std::map<std::string, std::string>;

/// The reason is a phrase for a person. An empty text is an object without members.
[[nodiscard]] std::expected<Members, std::string> parse(std::string_view text);
/// Sorted by key, one member a line.
std::string print(const Members& members);

/// None when the value is of another type or out of range. A number is an integer when its value is one: 3, 3.0, 3e2.
std::optional<bool> boolean(std::string_view value);
std::optional<std::int64_t> integer(std::string_view value);
std::optional<double> number(std::string_view value);
std::optional<std::string> string(std::string_view value);
std::optional<Counts> counts(std::string_view value);
std::optional<Texts> texts(std::string_view value);

/// Bytes that are not UTF-8 become U+FFFD: they would make the whole file unreadable.
std::string encode(std::string_view text);
std::string encode(const Counts& counts);
std::string encode(const Texts& texts);
/// `value` is finite.
std::string encode(double value);

}  // namespace orvane::PreferencesText
