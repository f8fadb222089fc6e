#pragma once

#include <random>
#include <string>

namespace orvane::testing {

/// Bytes as programs send them and as they do not: text, controls, sequences of every family with numbers of every
/// size, strings, and pieces of all that.
std::string randomStream(std::mt19937& random, int tokens);

}  // namespace orvane::testing
