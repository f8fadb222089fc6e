#pragma once

#include <string>

#include "Platform/Environment.h"

namespace orvane {

/// The time zone of the user, as the time zone database names it: $TZ, else that of the system, else "UTC".
std::string timeZoneName(const Environment& environment);

}  // namespace orvane
