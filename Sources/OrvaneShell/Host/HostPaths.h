#pragma once

#include <expected>
#include <string>

#include "Platform/Environment.h"
#include "Platform/SystemError.h"

namespace orvane::HostPaths {

/// Where the host tells its process id and its socket.
std::string lock(const Environment& environment);

std::string state(const Environment& environment);

/// The agents that the user added.
std::string agents(const Environment& environment);

/// What is known of all past conversations; it can be made again.
std::string history(const Environment& environment);

/// The control socket of the host with this application support folder. Its folder is made if missing.
std::expected<std::string, SystemError> socket(const Environment& environment);

}  // namespace orvane::HostPaths
