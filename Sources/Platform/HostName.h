#pragma once

#include <string>

namespace orvane {

/// What this computer calls itself, as shells put it into file URLs; empty when it has no name.
std::string hostName();

}  // namespace orvane
