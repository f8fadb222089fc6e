#pragma once

#include <cstddef>
#include <vector>

/// The shares that the children of a split take. In a tree they are as many as the children, finite, above zero and
/// sum to 1; every function here keeps or restores that.
namespace orvane::PaneFractions {

std::vector<double> equal(std::size_t count);

/// Whether these can be the shares of so many children: one each, finite and above zero. The sum may be anything.
bool fits(const std::vector<double>& fractions, std::size_t count);

/// Divides every share by the sum of all. Shares that already sum to 1, but for rounding, come back as they are.
std::vector<double> normalised(std::vector<double> fractions);

/// Halves the share at `index` and inserts the other half at `newIndex`, which is `index` or the place after it.
void halve(std::vector<double>& fractions, std::size_t index, std::size_t newIndex);

}  // namespace orvane::PaneFractions
