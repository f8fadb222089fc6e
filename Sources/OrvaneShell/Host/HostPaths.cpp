#include "OrvaneShell/Host/HostPaths.h"

#include "OrvaneCore/Support/Sha256.h"
#include "Platform/Folders.h"
#include "Platform/UnixSocket.h"

namespace orvane::HostPaths {

std::string lock(const Environment& environment) {
    return Folders::applicationSupport(environment) + "/host.lock";
}

std::string state(const Environment& environment) {
    return Folders::applicationSupport(environment) + "/state.json";
}

std::string agents(const Environment& environment) {
    return Folders::applicationSupport(environment) + "/agents.json";
}

std::string history(const Environment& environment) {
    return Folders::applicationSupport(environment) + "/history.json";
}

std::expected<std::string, SystemError> socket(const Environment& environment) {
    // Hosts with different support folders (a test, a second $XDG_DATA_HOME) may share a runtime folder.
    const std::string name = "/host-" + sha256Hex(Folders::applicationSupport(environment)).substr(0, 12) + ".sock";
    const auto fits = [&](const auto& folder) {
        return !folder || folder->size() + name.size() <= UnixSocket::longestPath;
    };
    auto folder = Folders::runtime(environment);
    if (!fits(folder)) folder = Folders::temporary(environment);
    if (!fits(folder)) folder = Folders::temporary({});
    if (!folder) return std::unexpected(folder.error());
    return *folder + name;
}

}  // namespace orvane::HostPaths
