// What a search finds against what a plain walk over the same text finds, while the text scrolls and is laid out anew.

#include <gtest/gtest.h>

#include <random>

#include "TerminalEmulator/Buffer/BufferNotation.h"
#include "TerminalEmulator/SearchService.h"

namespace orvane::testing {
namespace {

struct Cell {
    Position at;
    int width = 1;
    std::string text;
};

std::vector<std::vector<Cell>> cellsOfLines(const Buffer& buffer, const ClusterTable& clusters) {
    std::vector<std::vector<Cell>> lines;
    for (int row = 0; row < buffer.count(); ++row) {
        if (row == 0 || !buffer.row(row).isWrapped) lines.emplace_back();
        const bool continues = row + 1 < buffer.count() && buffer.row(row + 1).isWrapped;
        const bool isWideNext = continues && buffer.row(row + 1).at(0).isWide();
        int end = continues ? buffer.cols() : buffer.row(row).getTrimmedLength();
        const StoredCell last = buffer.row(row).at(buffer.cols() - 1);
        if (isWideNext && last.isEmpty() && !last.isRightHalf()) --end;
        for (int col = 0; col < end; ++col) {
            const StoredCell cell = buffer.row(row).at(col);
            if (!cell.isRightHalf()) lines.back().push_back({{row, col}, cell.width(), clusters.text(cell.code())});
        }
    }
    return lines;
}

bool startsWith(std::span<const Cell> cells, std::span<const std::string> term) {
    if (cells.size() < term.size()) return false;
    for (std::size_t index = 0; index < term.size(); ++index) {
        if (cells[index].text != term[index]) return false;
    }
    return true;
}

std::vector<std::pair<Position, Position>> naiveHits(const Buffer& buffer, const ClusterTable& clusters,
                                                     std::span<const std::string> term) {
    std::vector<std::pair<Position, Position>> hits;
    for (const std::vector<Cell>& line : cellsOfLines(buffer, clusters)) {
        for (std::size_t at = 0; at < line.size(); ++at) {
            if (!startsWith(std::span(line).subspan(at), term)) continue;
            const Cell& last = line[at + term.size() - 1];
            hits.emplace_back(line[at].at, Position{last.at.row, last.at.col + last.width});
            at += term.size() - 1;
        }
    }
    return hits;
}

std::vector<std::pair<Position, Position>> places(std::span<const SearchResult> results) {
    std::vector<std::pair<Position, Position>> hits;
    for (const SearchResult& result : results)
        hits.emplace_back(result.start, result.end);
    return hits;
}

TEST(SearchPropertyTests, HitsAreThoseOfAPlainWalkWhateverHappensToTheBuffer) {
    const std::vector<std::string> letters = {"a", "b", "一", " "};
    const std::u32string typed = U"ab一 ";
    for (std::uint32_t seed = 1; seed <= 8; ++seed) {
        std::mt19937 random(seed);
        const auto below = [&](std::size_t limit) { return random() % limit; };
        ClusterTable clusters;
        Buffer buffer(2 + static_cast<int>(below(20)), 1 + static_cast<int>(below(8)), 8,
                      static_cast<int>(below(2) == 0 ? 3000 : 40));
        buffer.fillViewportRows();
        SearchService search(buffer, clusters);
        for (int step = 0; step < 12; ++step) {
            std::u32string text;
            for (std::size_t left = below(seed % 3 == 0 ? 2500 : 300); left > 0; --left)
                text += below(seed % 3 == 1 ? 9 : 5000) == 0 ? U'\n' : typed[below(typed.size())];
            type(buffer, text);
            if (below(5) == 0) buffer.resize(2 + static_cast<int>(below(20)), 1 + static_cast<int>(below(8)));
            std::vector<std::string> term;
            std::string joined;
            for (std::size_t left = 4 + below(3); left > 0; --left)
                joined += term.emplace_back(letters[below(letters.size())]);
            const auto expected = naiveHits(buffer, clusters, term);
            const auto found = search.findAll(joined, {.caseSensitive = true});
            ASSERT_TRUE(found);
            ASSERT_EQ(places(found->hits), expected) << "seed " << seed << ", step " << step << ", " << joined;
            if (expected.size() > 40) continue;
            std::vector<SearchResult> walked;
            for (std::size_t count = 0; count < expected.size(); ++count) {
                const SearchOptions options{.caseSensitive = true};
                const auto next =
                    step % 2 == 0 ? search.findNext(joined, options) : search.findPrevious(joined, options);
                walked.push_back(next.value().value());
            }
            std::ranges::sort(walked, {}, &SearchResult::start);
            ASSERT_EQ(places(walked), expected) << "seed " << seed << ", step " << step << ", " << joined;
        }
    }
}

}  // namespace
}  // namespace orvane::testing
