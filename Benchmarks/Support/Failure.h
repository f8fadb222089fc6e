#pragma once

#include <expected>
#include <string>

namespace orvane::benchmark {

/// What a benchmark could not do, as one line for a person. A result that is wrong is one too: its time means nothing.
template <typename T>
using Measured = std::expected<T, std::string>;

using Failure = std::unexpected<std::string>;

}  // namespace orvane::benchmark
