#pragma once

#include <cstdint>

#include "TerminalEmulator/Buffer/Attribute.h"
#include "TerminalEmulator/Buffer/TinyAtom.h"

namespace orvane {

/// One cell, unpacked.
struct CharData {
    /// Codes below are Unicode scalars; those above are handles of a `ClusterTable`.
    static constexpr std::int32_t clusterBase = 0x400000;

    std::int32_t code = 0;     ///< 0 is an empty cell
    std::int8_t width = 1;     ///< 0 for the right half of a wide character, 1, or 2
    TinyAtom payload;          ///< the hyperlink
    bool isProtected = false;  ///< DECSCA: selective erasing leaves the cell alone
    Attribute attribute;

    bool isSimpleRune() const { return code < clusterBase; }

    static const CharData Null;

    bool operator==(const CharData&) const = default;
};

inline constexpr CharData CharData::Null{};

}  // namespace orvane
