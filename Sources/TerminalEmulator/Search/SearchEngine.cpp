#include "TerminalEmulator/Search/SearchEngine.h"

#include <algorithm>
#include <ranges>

#include "TerminalEmulator/LogicalLine.h"

namespace orvane {

void SearchEngine::setBuffer(const Buffer& buffer) {
    buffer_ = &buffer;
    cache_.setBuffer(buffer);
}

SearchEngine::Found SearchEngine::next(SearchPattern& pattern, Position from) {
    pattern.restart();
    Found found;
    const std::int64_t fromRow = invariantRow(from.row);
    const auto visitLine = [&](const SearchLine& line, std::string_view text) -> std::expected<Step, SearchError> {
        if (line.firstRow + line.rowCount <= fromRow) return Step::goOn;
        LineOffsetMapper mapper(*buffer_, clusters_, ringRow(line));
        return visitHits(pattern, text, [&](const Range& range) {
            if (mapper.cellAt(range.begin) < from) return Step::goOn;
            found = resultAt(mapper, range);
            return Step::stop;
        });
    };
    // The line that holds `from` starts at most two blocks above.
    if (auto error = visitLines(fromRow / SearchLineCache::rowsPerBlock - 2, visitLine)) {
        return std::unexpected(std::move(*error));
    }
    return found;
}

SearchEngine::Found SearchEngine::previous(SearchPattern& pattern, Position before) {
    pattern.restart();
    Found found;
    const std::int64_t beforeRow = invariantRow(before.row);
    const auto visitLine = [&](const SearchLine& line, std::string_view text) -> std::expected<Step, SearchError> {
        if (line.firstRow > beforeRow) return Step::goOn;
        const bool isBefore = line.firstRow + line.rowCount <= beforeRow;
        LineOffsetMapper mapper(*buffer_, clusters_, ringRow(line));
        std::optional<Range> last;
        const auto step = visitHits(pattern, text, [&](const Range& range) {
            if (!isBefore && mapper.cellAt(range.begin) >= before) return Step::stop;
            last = range;
            return Step::goOn;
        });
        if (!step) return step;
        if (!last) return Step::goOn;  // also when the visit stopped: there are lines above
        LineOffsetMapper again(*buffer_, clusters_, ringRow(line));
        found = resultAt(again, *last);
        return Step::stop;
    };
    if (auto error = visitLinesBackwards(beforeRow / SearchLineCache::rowsPerBlock, visitLine)) {
        return std::unexpected(std::move(*error));
    }
    return found;
}

std::expected<SearchHits, SearchError> SearchEngine::all(SearchPattern& pattern, std::size_t maximum) {
    pattern.restart();
    SearchHits found;
    const auto visitLine = [&](const SearchLine& line, std::string_view text) {
        LineOffsetMapper mapper(*buffer_, clusters_, ringRow(line));
        return visitHits(pattern, text, [&](const Range& range) {
            found.isTruncated = found.hits.size() == maximum;
            if (found.isTruncated) return Step::stop;
            found.hits.push_back(resultAt(mapper, range));
            return Step::goOn;
        });
    };
    if (auto error = visitLines(0, visitLine)) return std::unexpected(std::move(*error));
    return found;
}

std::expected<SearchHits, SearchError> SearchEngine::within(SearchPattern& pattern, int firstRow, int lastRow,
                                                            std::size_t maximum) {
    pattern.restart();
    SearchHits found;
    const std::int64_t first = invariantRow(firstRow);
    const auto visitLine = [&](const SearchLine& line, std::string_view text) -> std::expected<Step, SearchError> {
        if (line.firstRow + line.rowCount <= first) return Step::goOn;
        if (line.firstRow > invariantRow(lastRow)) return Step::stop;
        LineOffsetMapper mapper(*buffer_, clusters_, ringRow(line));
        return visitHits(pattern, text, [&](const Range& range) {
            if (mapper.cellAt(range.begin).row > lastRow) return Step::stop;
            const SearchResult hit = resultAt(mapper, range);
            if (hit.end.row < firstRow) return Step::goOn;
            found.isTruncated = found.hits.size() == maximum;
            if (found.isTruncated) return Step::stop;
            found.hits.push_back(hit);
            return Step::goOn;
        });
    };
    // The line that shows in the first row starts at most two blocks above.
    if (auto error = visitLines(first / SearchLineCache::rowsPerBlock - 2, visitLine)) {
        return std::unexpected(std::move(*error));
    }
    return found;
}

std::expected<std::size_t, SearchError> SearchEngine::count(SearchPattern& pattern, std::size_t maximum) {
    pattern.restart();
    std::size_t hits = 0;
    const auto visitLine = [&](const SearchLine&, std::string_view text) {
        return visitHits(pattern, text, [&](const Range&) { return ++hits >= maximum ? Step::stop : Step::goOn; });
    };
    if (auto error = visitLines(0, visitLine)) return std::unexpected(std::move(*error));
    return hits;
}

std::optional<SearchResult> SearchEngine::located(const SearchResult& result) const {
    // A cleared buffer counts from 0 again.
    if (result.cols != buffer_->cols() || result.linesTop > buffer_->linesTop()) return std::nullopt;
    const auto fallen = static_cast<std::int64_t>(buffer_->linesTop() - result.linesTop);
    if (fallen > result.start.row) return std::nullopt;
    SearchResult now = result;
    now.start.row -= static_cast<int>(fallen);
    now.end.row -= static_cast<int>(fallen);
    now.linesTop = buffer_->linesTop();
    if (LogicalLine::text(*buffer_, clusters_, now.start, now.end) != result.text) return std::nullopt;
    return now;
}

int SearchEngine::ringRow(const SearchLine& line) const {
    return static_cast<int>(line.firstRow - static_cast<std::int64_t>(buffer_->linesTop()));
}

std::optional<SearchError> SearchEngine::visitLines(std::int64_t firstBlock, const LineVisitor& visit) {
    const std::int64_t last = cache_.lastBlock();
    for (std::int64_t number = std::max(firstBlock, cache_.firstBlock()); number <= last; ++number) {
        const SearchBlock& block = cache_.block(number);
        for (const SearchLine& line : block.lines) {
            const auto step = visit(line, block.textOf(line));
            if (!step) return step.error();
            if (*step == Step::stop) return std::nullopt;
        }
    }
    return std::nullopt;
}

std::optional<SearchError> SearchEngine::visitLinesBackwards(std::int64_t lastBlock, const LineVisitor& visit) {
    const std::int64_t first = cache_.firstBlock();
    for (std::int64_t number = std::min(lastBlock, cache_.lastBlock()); number >= first; --number) {
        const SearchBlock& block = cache_.block(number);
        for (const SearchLine& line : std::views::reverse(block.lines)) {
            const auto step = visit(line, block.textOf(line));
            if (!step) return step.error();
            if (*step == Step::stop) return std::nullopt;
        }
    }
    return std::nullopt;
}

/// Tells whether the visitor wants the lines that follow.
std::expected<SearchEngine::Step, SearchError> SearchEngine::visitHits(SearchPattern& pattern, std::string_view line,
                                                                       const HitVisitor& visit) {
    pattern.enterLine(line);
    for (std::size_t from = 0; from < line.size();) {
        const auto range = pattern.next(line, from);
        if (!range) return std::unexpected(range.error());
        if (!*range) break;
        if (visit(**range) == Step::stop) return Step::stop;
        from = (*range)->end;
    }
    return Step::goOn;
}

SearchResult SearchEngine::resultAt(LineOffsetMapper& mapper, const Range& range) const {
    SearchResult result{.linesTop = buffer_->linesTop(), .cols = buffer_->cols()};
    result.start = mapper.cellAt(range.begin);
    result.end = mapper.behind(range.end);
    result.text = LogicalLine::text(*buffer_, clusters_, result.start, result.end);
    return result;
}

}  // namespace orvane
