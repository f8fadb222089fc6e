#include "OrvaneCore/Support/IdPrefix.h"

#include <algorithm>
#include <optional>

namespace orvane::IdPrefix {

std::expected<Uuid, Error> resolve(std::string_view prefix, const std::vector<Uuid>& ids) {
    std::string wanted(prefix);
    std::ranges::transform(wanted, wanted.begin(),
                           [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
    if (wanted.empty()) return std::unexpected(Error::none);
    std::optional<Uuid> found;
    for (const Uuid& id : ids) {
        if (!id.lowerText().starts_with(wanted) || found == id) continue;
        if (found) return std::unexpected(Error::several);
        found = id;
    }
    if (!found) return std::unexpected(Error::none);
    return *found;
}

std::size_t distinguishingLength(const std::vector<Uuid>& ids, std::size_t minimum) {
    std::vector<std::string> texts;
    texts.reserve(ids.size());
    for (const Uuid& id : ids)
        texts.push_back(id.lowerText());
    std::ranges::sort(texts);
    std::size_t length = minimum;
    for (std::size_t index = 1; index < texts.size(); ++index) {
        // Sorted, so a text shares most with its neighbours.
        if (texts[index] == texts[index - 1]) continue;
        const auto differ = std::ranges::mismatch(texts[index - 1], texts[index]);
        length = std::max(length, static_cast<std::size_t>(differ.in1 - texts[index - 1].begin()) + 1);
    }
    return length;
}

}  // namespace orvane::IdPrefix
