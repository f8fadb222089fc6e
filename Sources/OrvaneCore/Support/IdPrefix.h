#pragma once

#include <expected>
#include <string>
#include <string_view>
#include <vector>

#include "OrvaneCore/Support/Uuid.h"

namespace orvane::IdPrefix {

enum class Error { none, several };

/// The one id whose text begins with the prefix, whatever its case. An empty prefix fits none.
std::expected<Uuid, Error> resolve(std::string_view prefix, const std::vector<Uuid>& ids);

/// How many leading characters tell each of the ids apart from the others; at least `minimum`.
std::size_t distinguishingLength(const std::vector<Uuid>& ids, std::size_t minimum = 8);

}  // namespace orvane::IdPrefix
