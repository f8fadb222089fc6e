#pragma once

#include <string>
#include <vector>

#include "Orvane/Agents/TerminalAgent.h"

/// Which model an agent runs and how full its context is, in a few columns.
namespace orvane::ContextGauge {

/// From so much on an agent soon makes room, and forgets.
inline constexpr double warningFraction = 0.8;

struct Facts {
    std::string model;               ///< as agents write it; empty when it is not known
    std::optional<double> fraction;  ///< 0 to 1

    bool isWarning() const { return fraction && *fraction >= warningFraction; }
};

Facts of(TerminalAgent& agent);

/// From the longest, "Opus 4.5 ▕███  ▏ 62%", to the shortest, "62%". A context that is nearly full has a "!" too. Empty
/// when nothing is known.
std::vector<std::string> forms(const Facts& facts);

}  // namespace orvane::ContextGauge
