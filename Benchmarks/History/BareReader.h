#pragma once

#include <cstddef>
#include <string>

namespace orvane::benchmark {

/// Reads what an index has to read of the transcripts below a home, on as many threads, and does nothing with it.
/// Returns the bytes read.
std::size_t readEnds(const std::string& home, std::size_t threads);

}  // namespace orvane::benchmark
