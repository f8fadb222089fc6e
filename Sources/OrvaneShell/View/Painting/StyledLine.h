#pragma once

#include <string>

#include "TerminalEmulator/Buffer/Attribute.h"

namespace orvane {

/// A row of text that is drawn in one look, with something dim at its right end.
struct StyledLine {
    std::string text;
    Attribute look = {};
    std::string detail = {};

    bool operator==(const StyledLine&) const = default;
};

}  // namespace orvane
