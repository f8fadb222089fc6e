#pragma once

#include <array>
#include <span>
#include <string_view>

namespace orvane {

/// One text in all languages, in the order of `Language`. An empty text is a missing translation.
struct TextEntry {
    std::string_view key;
    std::array<std::string_view, 7> texts;
};

/// Every text, sorted by key. Generated from Resources/Texts during the build.
std::span<const TextEntry> textTable();

}  // namespace orvane
