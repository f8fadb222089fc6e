#pragma once

#include <boost/json/array.hpp>
#include <vector>

#include "OrvaneCore/Support/Json.h"

namespace orvane {

/// A JSON array of what the `encode` of each entry gives; `JSONObject::list` reads it back.
template <typename Entry>
JsonArray encodedList(const std::vector<Entry>& entries) {
    JsonArray array;
    array.reserve(entries.size());
    for (const Entry& entry : entries)
        array.push_back(entry.encode());
    return array;
}

}  // namespace orvane
