#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

/// Addresses in running text, one element a character. Only those with a scheme count: a bare path or host name is
/// none.
namespace orvane::UrlScan {

/// Elements of a text, `end` behind the last.
struct Range {
    std::size_t begin = 0;
    std::size_t end = 0;
};

/// Whether the character may be part of an address (RFC 3986, and letters of all scripts as in RFC 3987).
bool isUrlCharacter(char32_t scalar);

/// Whether the text starts with a scheme.
bool startsAddress(std::u32string_view text);

/// The address that the element is part of. Punctuation that ends a sentence and a closing bracket that was not opened
/// within the address do not belong to it.
std::optional<Range> addressAt(std::u32string_view text, std::size_t index);

}  // namespace orvane::UrlScan
