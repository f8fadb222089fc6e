#pragma once

#include <cstddef>
#include <expected>
#include <limits>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace orvane {

/// A regular expression in Perl's syntax over UTF-8, also one that the user wrote. `\w`, `\d`, `\b` and case follow
/// Unicode; CR, LF and CR LF end a line. Malformed bytes of a subject match nothing, what stands around them does.
///
/// No pattern can hang the program: the work of a search is limited in proportion to its subject's length (at
/// the worst about 10 ms for a row and half a second for 1 MB). A search that runs into the limit ends as "no match";
/// those who have to know the difference ask `search`, `test` or `allMatches`.
///
/// Copies share the compiled pattern. Every function may be called from several threads at once.
class Regex {
 public:
    struct Options {
        bool ignoresCase = false;
        bool multiline = false;  ///< `^` and `$` also match at the ends of lines
    };

    struct Error {
        std::size_t offset = 0;  ///< in bytes of the pattern
        std::string message;     ///< one English sentence of the library, without its final stop
    };

    struct Group {
        std::size_t begin = 0;  ///< in bytes of the subject
        std::size_t end = 0;
        std::string_view text;  ///< looks into the subject

        bool operator==(const Group&) const = default;
    };

    /// The whole match, then its groups by number. A group that took no part is unset.
    struct Match {
        std::vector<std::optional<Group>> groups;

        const Group& whole() const { return *groups.front(); }
    };

    struct LimitExceeded {};

    struct Matches {
        std::vector<Match> found;
        bool limitExceeded = false;  ///< there may be more than was found
    };

    enum class Outcome { match, noMatch, limitExceeded };

    static constexpr std::size_t maximumPatternLength = 64 * 1024;  ///< in bytes

    /// Fails for a malformed pattern and for one that is too long or compiles to too much.
    static std::expected<Regex, Error> compile(std::string_view pattern, Options options);
    static std::expected<Regex, Error> compile(std::string_view pattern) { return compile(pattern, {}); }

    /// The first match that starts at or after the byte `from`; inside a character means behind it.
    std::expected<std::optional<Match>, LimitExceeded> search(std::string_view subject, std::size_t from = 0) const;
    std::optional<Match> firstMatch(std::string_view subject, std::size_t from = 0) const;

    /// Whether there is a match anywhere in the subject. Quicker than asking for the match.
    Outcome test(std::string_view subject) const;
    bool matches(std::string_view subject) const { return test(subject) == Outcome::match; }

    /// Matches from left to right that do not overlap, at most `maximum`. An empty match is taken too, but never twice
    /// at one place.
    Matches allMatches(std::string_view subject, std::size_t maximum = std::numeric_limits<std::size_t>::max()) const;

 private:
    struct Code;
    class Searcher;

    explicit Regex(std::shared_ptr<const Code> code) : code_(std::move(code)) {}

    std::shared_ptr<const Code> code_;
};

}  // namespace orvane
