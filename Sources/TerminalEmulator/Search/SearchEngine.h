#pragma once

#include <cstddef>
#include <cstdint>
#include <expected>
#include <functional>
#include <optional>
#include <string_view>

#include "TerminalEmulator/Buffer/Buffer.h"
#include "TerminalEmulator/Position.h"
#include "TerminalEmulator/Search/LineOffsetMapper.h"
#include "TerminalEmulator/Search/SearchLineCache.h"
#include "TerminalEmulator/Search/SearchPattern.h"
#include "TerminalEmulator/Search/SearchResult.h"

namespace orvane {

/// Walks over the lines of a buffer, forwards and backwards. It has no memory of hits.
class SearchEngine {
 public:
    using Found = std::expected<std::optional<SearchResult>, SearchError>;

    /// Both must outlive the engine.
    SearchEngine(const Buffer& buffer, const ClusterTable& clusters)
        : buffer_(&buffer), clusters_(clusters), cache_(buffer, clusters) {}

    void setBuffer(const Buffer& buffer);

    /// The first hit that starts at `from` or later.
    Found next(SearchPattern& pattern, Position from);
    /// The last hit that starts before `before`.
    Found previous(SearchPattern& pattern, Position before);
    std::expected<SearchHits, SearchError> all(SearchPattern& pattern, std::size_t maximum);
    /// The hits that show in these rows of the ring.
    std::expected<SearchHits, SearchError> within(SearchPattern& pattern, int firstRow, int lastRow,
                                                  std::size_t maximum);
    /// How many hits there are, `maximum` when there are as many or more.
    std::expected<std::size_t, SearchError> count(SearchPattern& pattern, std::size_t maximum);

    /// The hit where it is now; nothing when its row has fallen off, its text has changed or the width has.
    std::optional<SearchResult> located(const SearchResult& result) const;

 private:
    enum class Step : std::uint8_t { goOn, stop };
    using Range = SearchPattern::Range;
    using HitVisitor = std::function<Step(const Range&)>;
    using LineVisitor = std::function<std::expected<Step, SearchError>(const SearchLine&, std::string_view text)>;

    int ringRow(const SearchLine& line) const;
    std::int64_t invariantRow(int ringRow) const { return static_cast<std::int64_t>(buffer_->linesTop()) + ringRow; }
    std::optional<SearchError> visitLines(std::int64_t firstBlock, const LineVisitor& visit);
    std::optional<SearchError> visitLinesBackwards(std::int64_t lastBlock, const LineVisitor& visit);
    static std::expected<Step, SearchError> visitHits(SearchPattern& pattern, std::string_view line,
                                                      const HitVisitor& visit);
    SearchResult resultAt(LineOffsetMapper& mapper, const Range& range) const;

    const Buffer* buffer_;
    const ClusterTable& clusters_;
    SearchLineCache cache_;
};

}  // namespace orvane
