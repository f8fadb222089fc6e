#include "OrvaneShell/Host/ProjectFolder.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>

#include "OrvaneCore/Support/Text.h"

namespace orvane {

std::expected<std::string, std::string> usableFolder(const L10n& l10n, const std::string& path) {
    const std::string shown = Text::oneLine(path);
    if (!path.starts_with('/')) return std::unexpected(l10n.text("error.pathNotAbsolute", shown));
    char* resolved = realpath(path.c_str(), nullptr);
    if (resolved == nullptr) {
        const char* key = errno == ENOENT || errno == ENOTDIR ? "error.pathMissing" : "error.pathUnreadable";
        return std::unexpected(l10n.text(key, shown));
    }
    std::string folder(resolved);
    std::free(resolved);
    // A link may lead to one, and the state file could not name it.
    if (!Text::isValidUtf8(folder)) {
        return std::unexpected(l10n.text("error.pathNotUtf8", Text::oneLine(folder)));
    }
    struct stat status{};
    if (stat(folder.c_str(), &status) != 0) return std::unexpected(l10n.text("error.pathUnreadable", shown));
    if (!S_ISDIR(status.st_mode)) return std::unexpected(l10n.text("error.pathIsFile", shown));
    if (access(folder.c_str(), R_OK | X_OK) != 0) return std::unexpected(l10n.text("error.pathUnreadable", shown));
    return folder;
}

}  // namespace orvane
