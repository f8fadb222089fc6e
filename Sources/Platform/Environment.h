#pragma once

#include <map>
#include <string>

namespace orvane {

/// Environment variables by name. Passed as a value, so that a test decides what a folder or a child sees.
using Environment = std::map<std::string, std::string>;

/// The variables of this process. Entries without "=" are left out.
Environment currentEnvironment();

/// The value of a variable; empty when it is not set, which every variable that we read treats alike.
std::string variable(const Environment& environment, const std::string& name);

}  // namespace orvane
