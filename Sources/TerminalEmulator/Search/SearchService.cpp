#include "TerminalEmulator/SearchService.h"

#include <algorithm>
#include <utility>

namespace orvane {

SearchService::SearchService(const Buffer& buffer, const ClusterTable& clusters)
    : buffer_(&buffer), engine_(buffer, clusters) {}

void SearchService::setBuffer(const Buffer& buffer) {
    buffer_ = &buffer;
    engine_.setBuffer(buffer);
    state_.lastHit.reset();
}

SearchService::Found SearchService::findNext(std::string_view term, const SearchOptions& options) {
    return find(term, options, Direction::forwards);
}

SearchService::Found SearchService::findNext() {
    return find(std::string(state_.term), state_.options, Direction::forwards);
}

SearchService::Found SearchService::findPrevious(std::string_view term, const SearchOptions& options) {
    return find(term, options, Direction::backwards);
}

SearchService::Found SearchService::findPrevious() {
    return find(std::string(state_.term), state_.options, Direction::backwards);
}

std::expected<SearchHits, SearchError> SearchService::findAll(std::string_view term, const SearchOptions& options) {
    if (term.empty()) return SearchHits{};
    if (auto error = prepare(term, options)) return std::unexpected(std::move(*error));
    return engine_.all(*pattern_, maximumHits);
}

std::expected<SearchHits, SearchError> SearchService::findWithin(std::string_view term, const SearchOptions& options,
                                                                 int firstRow, int lastRow) {
    if (term.empty()) return SearchHits{};
    if (auto error = prepare(term, options)) return std::unexpected(std::move(*error));
    return engine_.within(*pattern_, firstRow, lastRow, maximumHits);
}

std::expected<std::size_t, SearchError> SearchService::hitCount(std::string_view term, const SearchOptions& options) {
    if (term.empty()) return 0;
    if (auto error = prepare(term, options)) return std::unexpected(std::move(*error));
    return engine_.count(*pattern_, maximumCount);
}

void SearchService::clear() {
    state_ = {};
    pattern_.reset();
    engine_.setBuffer(*buffer_);
}

SearchService::Found SearchService::find(std::string_view term, const SearchOptions& options, Direction direction) {
    const auto start = std::exchange(startsAt_, std::nullopt);
    if (term.empty()) {
        state_ = {.options = options, .lastHit = state_.lastHit};
        return std::nullopt;
    }
    if (auto error = prepare(term, options)) return std::unexpected(std::move(*error));
    const bool isSame = state_.term == term && state_.options == options;
    const Position from = start ? *start : origin(direction, isSame);
    Found found = search(direction, from);
    const bool hasWrapped = found && !*found;
    if (hasWrapped) found = search(direction, direction == Direction::forwards ? Position{} : behindNewest());
    if (!found) return found;
    state_.term = term;
    state_.options = options;
    state_.hasWrapped = hasWrapped && found->has_value();
    if (*found) state_.lastHit = **found;
    return found;
}

SearchService::Found SearchService::search(Direction direction, Position from) {
    return direction == Direction::forwards ? engine_.next(*pattern_, from) : engine_.previous(*pattern_, from);
}

std::optional<SearchError> SearchService::prepare(std::string_view term, const SearchOptions& options) {
    if (pattern_ && patternTerm_ == term && patternOptions_ == options) return std::nullopt;
    auto compiled = SearchPattern::compile(term, options);
    if (!compiled) return std::move(compiled.error());
    pattern_ = std::move(*compiled);
    patternTerm_ = term;
    patternOptions_ = options;
    return std::nullopt;
}

/// Where a search starts: forwards takes hits from here on, backwards those before.
Position SearchService::origin(Direction direction, bool isSame) const {
    const bool isForwards = direction == Direction::forwards;
    if (const auto last = lastHitStart()) {
        // The last hit is passed over when the term is the same and counts again when it is another.
        const bool isBehind = isForwards == isSame;
        return isBehind ? Position{last->row, last->col + 1} : *last;
    }
    return isForwards ? Position{.row = buffer_->yDisp()} : Position{.row = buffer_->yDisp() + buffer_->rows()};
}

/// The place of the last hit, even if it shows something else by now; the oldest place when that has fallen off.
/// Nothing when the text has been laid out anew since.
std::optional<Position> SearchService::lastHitStart() const {
    const auto& hit = state_.lastHit;
    if (!hit || hit->cols != buffer_->cols() || hit->linesTop > buffer_->linesTop()) return std::nullopt;
    const auto fallen = static_cast<std::int64_t>(buffer_->linesTop() - hit->linesTop);
    if (fallen > hit->start.row) return Position{};
    return Position{hit->start.row - static_cast<int>(fallen), hit->start.col};
}

}  // namespace orvane
