#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace orvane {

/// How a term is meant. "Word" and case follow Unicode.
struct SearchOptions {
    bool caseSensitive = false;
    bool regex = false;      ///< Perl's syntax; else the term is plain text
    bool wholeWord = false;  ///< neither a letter, a digit nor an underscore touches the hit

    bool operator==(const SearchOptions&) const = default;
};

/// Why a search came to nothing.
struct SearchError {
    enum class Code : std::uint8_t {
        invalidTerm,    ///< a malformed pattern, or text that is not UTF-8
        termTooLong,    ///< longer than `SearchPattern::maximumTermLength`
        limitExceeded,  ///< the pattern takes too many steps; hits found so far are not given
    };

    Code code = Code::invalidTerm;
    std::size_t offset = 0;  ///< in bytes of the term, where it is malformed
    std::string message;     ///< one English sentence without its final stop

    bool operator==(const SearchError&) const = default;
};

}  // namespace orvane
