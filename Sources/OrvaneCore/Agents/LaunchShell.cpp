#include "OrvaneCore/Agents/LaunchShell.h"

#include <utility>

namespace orvane::LaunchShell {

std::string choose(const std::string& loginShell, const PathTest& isExecutable) {
    if (isExecutable(std::string(preferred))) return std::string(preferred);
    const std::string name = lastPathComponent(loginShell);
    const bool isFit = loginShell.starts_with('/') && (name == "zsh" || name == "bash");
    return isFit && isExecutable(loginShell) ? loginShell : std::string(lastResort);
}

std::vector<std::string> loginArguments(std::string script) {
    return {"-l", "-i", "-c", std::move(script)};
}

}  // namespace orvane::LaunchShell
