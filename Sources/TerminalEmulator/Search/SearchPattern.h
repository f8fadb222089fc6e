#pragma once

#include <cstddef>
#include <cstdint>
#include <expected>
#include <memory>
#include <optional>
#include <string_view>

#include "TerminalEmulator/Search/SearchOptions.h"

namespace orvane {

/// A term made ready for matching, with what is left of the work that one search may do. A catastrophic pattern ends by
/// that limit, a second at the very worst, not per line but for all lines of a search together.
class SearchPattern {
 public:
    static constexpr std::size_t maximumTermLength = 1024;  ///< in bytes

    /// In bytes of a text, `end` behind the last.
    struct Range {
        std::size_t begin = 0;
        std::size_t end = 0;
    };

    /// The term must not be empty.
    static std::expected<SearchPattern, SearchError> compile(std::string_view term, const SearchOptions& options);

    SearchPattern(SearchPattern&&) noexcept;
    SearchPattern& operator=(SearchPattern&&) noexcept;
    ~SearchPattern();

    /// Grants the work of a new search.
    void restart();
    /// To be called once before the hits of a line are asked for: grants work for its length.
    void enterLine(std::string_view line);
    /// The first hit in the line that starts at `from` or later. Hits are never empty.
    std::expected<std::optional<Range>, SearchError> next(std::string_view line, std::size_t from);

 private:
    struct Code;
    enum class Form : std::uint8_t { plain, metered };

    explicit SearchPattern(std::unique_ptr<Code> code);
    int match(Form form, std::string_view line, std::size_t from);

    std::unique_ptr<Code> code_;
    Form form_ = Form::plain;  ///< for the line that was entered
    int plainFailures_ = 0;    ///< lines of this search that the plain form gave up
};

}  // namespace orvane
