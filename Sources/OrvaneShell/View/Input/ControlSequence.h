#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace orvane {

/// A whole "CSI …" of the terminal, taken apart: "ESC [ ? 1 : 2 ; 3 $ y".
struct ControlSequence {
    using Parameter = std::vector<std::optional<int>>;  ///< its parts, set apart by ':'; nothing for one left out

    char prefix = '\0';  ///< one of "<=>?"
    std::vector<Parameter> parameters;
    std::string intermediates;  ///< 0x20 to 0x2F
    char final = '\0';

    /// A part of a parameter; nothing when it was not given.
    std::optional<int> part(std::size_t parameter, std::size_t place = 0) const;
    int valueOr(std::size_t parameter, int value) const { return part(parameter).value_or(value); }
    /// The first part of each, 0 for those left out.
    std::vector<int> values() const;
    bool isPlain() const { return prefix == '\0' && intermediates.empty(); }
};

inline constexpr int greatestParameter = 99'999'999;

/// What follows the introducer, the final byte included. Greater numbers become `greatestParameter`; nothing for what
/// is no control sequence.
std::optional<ControlSequence> readControlSequence(std::string_view body);

}  // namespace orvane
