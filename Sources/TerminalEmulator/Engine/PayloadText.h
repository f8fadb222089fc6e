#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

/// Reading what commands carry as text.
namespace orvane::PayloadText {

/// The parts of a text between semicolons, one after the other. An empty text is one empty part.
class Parts {
 public:
    explicit Parts(std::string_view text) : rest_(text) {}

    std::optional<std::string_view> next();
    /// All that has not been read yet, semicolons included.
    std::optional<std::string_view> rest() const { return rest_; }

 private:
    std::optional<std::string_view> rest_;
};

/// Decimal digits and nothing else; nothing also for a number that an int does not hold.
std::optional<int> number(std::string_view text);

/// Text for a person: valid UTF-8 without control characters, cut before the character that would pass `limit` bytes.
/// What is malformed becomes U+FFFD.
std::string shown(std::string_view text, std::size_t limit);

}  // namespace orvane::PayloadText
