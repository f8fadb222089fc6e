#pragma once

#include "TerminalEmulator/TerminalColor.h"

namespace orvane {

/// A colour in CIE L*a*b* (1976) under the white of D65, in which equal steps look about equal.
struct LabColor {
    double lightness = 0;  ///< 0 to 100
    double a = 0;
    double b = 0;

    static LabColor from(const TerminalColor& color);  ///< of sRGB
    TerminalColor toTerminalColor() const;             ///< clipped to sRGB, in steps of 8 bits a channel

    /// From this colour at 0 to the other at 1.
    LabColor mixed(const LabColor& other, double share) const;
};

}  // namespace orvane
