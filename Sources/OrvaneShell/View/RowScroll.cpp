#include "OrvaneShell/View/RowScroll.h"

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdlib>
#include <vector>

namespace orvane {

namespace {

/// In cells; the sequences of a scroll have some 20 bytes, and the line feeds come on top.
constexpr int leastSaving = 40;

using Prints = std::span<const RowPrint>;

std::size_t index(int row) {
    return static_cast<std::size_t>(row);
}

/// By how much most rows that are not where they were have moved; 0 for none. Rows that look the same count for every
/// way that they may have come, so that those with one way decide.
int commonCount(Prints before, Prints after) {
    const int rows = static_cast<int>(after.size());
    std::vector<int> weights(2 * after.size());  // by count, from -rows
    for (int row = 0; row < rows; ++row) {
        const RowPrint& wanted = after[index(row)];
        if (wanted.weight == 0 || wanted.hash == before[index(row)].hash) continue;
        for (int from = 0; from < rows; ++from) {
            if (before[index(from)].hash == wanted.hash) weights[index(from - row + rows)] += wanted.weight;
        }
    }
    const auto best = std::ranges::max_element(weights);
    return best == weights.end() || *best == 0 ? 0 : static_cast<int>(best - weights.begin()) - rows;
}

/// The rows between the first and the last that moved so far, with those that they came from.
RowScroll scrollOf(Prints before, Prints after, int count) {
    RowScroll scroll{.top = static_cast<int>(after.size()), .bottom = 0, .count = count};
    for (int row = 0; row < static_cast<int>(after.size()); ++row) {
        const int from = row + count;
        if (from < 0 || from >= static_cast<int>(before.size())) continue;
        if (after[index(row)].weight == 0 || after[index(row)].hash != before[index(from)].hash) continue;
        scroll.top = std::min({scroll.top, row, from});
        scroll.bottom = std::max({scroll.bottom, row + 1, from + 1});
    }
    return scroll;
}

int saving(Prints before, Prints after, const RowScroll& scroll) {
    int cells = -leastSaving - std::abs(scroll.count);
    for (int row = scroll.top; row < scroll.bottom; ++row) {
        const RowPrint& wanted = after[index(row)];
        const int from = row + scroll.count;
        const bool isThere = wanted.hash == before[index(row)].hash;
        const bool comes = from >= scroll.top && from < scroll.bottom && wanted.hash == before[index(from)].hash;
        cells += (isThere ? 0 : wanted.weight) - (comes ? 0 : wanted.weight);
    }
    return cells;
}

}  // namespace

RowPrint RowPrint::of(std::span<const StoredCell> row) {
    RowPrint print;
    // Steps of FNV-1a over words of 64 bits, mixed by a rotation for the upper halves to count.
    const auto add = [&](std::uint64_t word) { print.hash = std::rotl(print.hash ^ word, 29) * 0x9E3779B97F4A7C15U; };
    for (const StoredCell& cell : row) {
        add(std::uint64_t{cell.text} << 32 | cell.foreground);
        add(std::uint64_t{cell.background} << 32 | cell.extra);
        print.weight += cell.isDefaultBlank() ? 0 : 1;
    }
    return print;
}

std::optional<RowScroll> findScroll(Prints before, Prints after) {
    const int count = commonCount(before, after);
    if (count == 0) return {};
    const RowScroll scroll = scrollOf(before, after, count);
    if (saving(before, after, scroll) <= 0) return {};
    return scroll;
}

}  // namespace orvane
