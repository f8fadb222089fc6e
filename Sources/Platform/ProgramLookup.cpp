#include "Platform/ProgramLookup.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

namespace orvane {

namespace {

enum class Finding { nothing, notAllowed, program };

Finding look(const std::string& path) {
    struct stat status{};
    if (stat(path.c_str(), &status) != 0) return errno == EACCES ? Finding::notAllowed : Finding::nothing;
    if (!S_ISREG(status.st_mode)) return Finding::nothing;
    return faccessat(AT_FDCWD, path.c_str(), X_OK, AT_EACCESS) == 0 ? Finding::program : Finding::notAllowed;
}

}  // namespace

std::expected<std::string, SystemError> findProgram(const std::string& name, std::string_view searchPath,
                                                    const std::string& folder) {
    if (name.find('/') != std::string::npos) return name;
    bool isForbidden = false;
    while (!name.empty()) {
        const auto colon = searchPath.find(':');
        const std::string_view entry = searchPath.substr(0, colon);
        // An empty entry is the working folder (POSIX, environment variable PATH).
        std::string candidate = entry.empty() ? "./" + name : std::string(entry) + '/' + name;
        const bool isRelative = !candidate.starts_with('/') && !folder.empty();
        const Finding finding = look(isRelative ? fmt::format("{}/{}", folder, candidate) : candidate);
        if (finding == Finding::program) return candidate;
        isForbidden = isForbidden || finding == Finding::notAllowed;
        if (colon == std::string_view::npos) break;
        searchPath.remove_prefix(colon + 1);
    }
    return std::unexpected(SystemError::of(isForbidden ? EACCES : ENOENT, "start", name));
}

}  // namespace orvane
