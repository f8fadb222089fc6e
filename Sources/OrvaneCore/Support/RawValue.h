#pragma once

#include <array>
#include <optional>
#include <string_view>
#include <utility>

namespace orvane {

/// The texts an enum has in JSON, preferences and on the command line. Specialise `table` beside the enum:
///
///     template <>
///     struct RawValues<PaneAxis> {
///         static constexpr std::array table = {rawValueOf(PaneAxis::horizontal, "horizontal"), …};
///     };
template <typename Enum>
struct RawValues;

template <typename Enum>
constexpr std::pair<Enum, std::string_view> rawValueOf(Enum value, std::string_view text) {
    return {value, text};
}

/// The text of a value; empty for a value that the table lacks.
template <typename Enum>
constexpr std::string_view rawValue(Enum value) {
    for (const auto& [candidate, text] : RawValues<Enum>::table) {
        if (candidate == value) return text;
    }
    return {};
}

/// The value with exactly this text, or none.
template <typename Enum>
constexpr std::optional<Enum> fromRawValue(std::string_view text) {
    for (const auto& [value, candidate] : RawValues<Enum>::table) {
        if (candidate == text) return value;
    }
    return std::nullopt;
}

}  // namespace orvane
