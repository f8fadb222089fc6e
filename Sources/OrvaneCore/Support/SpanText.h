#pragma once

#include <string>

#include "OrvaneCore/Support/Date.h"
#include "OrvaneCore/Support/L10n.h"

namespace orvane {

/// A length of time for a person: "12 s", "3 min", "2 h". Less than none counts as none.
std::string spanText(const L10n& l10n, Seconds span);

}  // namespace orvane
