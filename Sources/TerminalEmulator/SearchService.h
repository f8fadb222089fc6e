#pragma once

#include <cstddef>
#include <cstdint>
#include <expected>
#include <optional>
#include <string>
#include <string_view>

#include "TerminalEmulator/Search/SearchEngine.h"

namespace orvane {

/// What the next search goes on from.
struct SearchState {
    std::string term;
    SearchOptions options;
    std::optional<SearchResult> lastHit;  ///< where it was when it was found
    bool hasWrapped = false;              ///< the last search came round an end of the buffer

    bool operator==(const SearchState&) const = default;
};

/// Finds text in a buffer, history included. Rows that are joined by wrapping are one line, and a hit may run over
/// several of them; what stands across lines is not found, nor what stands across a cut of a line of more than 1,024
/// rows (see `SearchLineCache`). On the thread of the buffer only.
///
/// Failures leave the state as it was. An empty term has no hits.
class SearchService {
 public:
    static constexpr std::size_t maximumHits = 10'000;      ///< of `findAll`
    static constexpr std::size_t maximumCount = 1'000'000;  ///< of `hitCount`

    using Found = SearchEngine::Found;

    /// Both must outlive the service.
    SearchService(const Buffer& buffer, const ClusterTable& clusters);

    /// Searches another buffer from now on; the term stays, the last hit does not.
    void setBuffer(const Buffer& buffer);

    /// The hit behind the last one, or from the top of the view on when there was none; comes round at the end. With
    /// another term than before the search starts where the last hit did, so that a hit stays while its term grows.
    Found findNext(std::string_view term, const SearchOptions& options);
    Found findNext();  ///< with the last term
    /// The same backwards, first from the bottom of the view.
    Found findPrevious(std::string_view term, const SearchOptions& options);
    Found findPrevious();

    /// The next search does not go on from the last hit: forwards it takes hits from this cell on, backwards those
    /// before it. Good for one search.
    void startAt(Position at) { startsAt_ = at; }

    /// Hits from the oldest row on, `maximumHits` at most. The last hit stays what it is.
    std::expected<SearchHits, SearchError> findAll(std::string_view term, const SearchOptions& options);
    /// The same for hits that show in these rows, first to last.
    std::expected<SearchHits, SearchError> findWithin(std::string_view term, const SearchOptions& options, int firstRow,
                                                      int lastRow);
    /// How many hits there are, at most `maximumCount`.
    std::expected<std::size_t, SearchError> hitCount(std::string_view term, const SearchOptions& options);

    /// A hit found earlier, at the place where it is now. Nothing when it is stale: its row has fallen off the history,
    /// its cells show something else, or the width has changed.
    std::optional<SearchResult> located(const SearchResult& result) const { return engine_.located(result); }

    const SearchState& state() const { return state_; }
    /// Forgets the term, the last hit and what was kept of the text.
    void clear();

 private:
    enum class Direction : std::uint8_t { forwards, backwards };

    Found find(std::string_view term, const SearchOptions& options, Direction direction);
    Found search(Direction direction, Position from);
    std::optional<SearchError> prepare(std::string_view term, const SearchOptions& options);
    Position origin(Direction direction, bool isSame) const;
    std::optional<Position> lastHitStart() const;
    Position behindNewest() const { return {.row = buffer_->count()}; }

    const Buffer* buffer_;
    SearchEngine engine_;
    SearchState state_;
    std::optional<Position> startsAt_;
    // The term that is compiled, which a failed search or `findAll` leaves other than that of the state.
    std::string patternTerm_;
    SearchOptions patternOptions_;
    std::optional<SearchPattern> pattern_;
};

}  // namespace orvane
