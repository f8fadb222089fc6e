#include "Platform/Folders.h"

#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

namespace orvane::Folders {

namespace {

std::string withoutTrailingSlash(std::string path) {
    while (path.size() > 1 && path.back() == '/')
        path.pop_back();
    return path;
}

/// The folder a variable names, or the default when it is unset or relative.
std::string baseFolder(const Environment& environment, const std::string& name, const std::string& fallback) {
    const std::string value = variable(environment, name);
    return value.starts_with('/') ? withoutTrailingSlash(value) : fallback;
}

/// The folder itself, not a link to it, and ours.
bool isOwnFolder(const std::string& path) {
    struct stat status{};
    return lstat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode) && status.st_uid == geteuid();
}

bool isFolder(const std::string& path) {
    struct stat status{};
    return stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

}  // namespace

std::string home(const Environment& environment) {
    const std::string value = variable(environment, "HOME");
    if (value.starts_with('/')) return withoutTrailingSlash(value);
    const passwd* entry = getpwuid(geteuid());
    return entry != nullptr && entry->pw_dir != nullptr ? withoutTrailingSlash(entry->pw_dir) : "/";
}

std::string applicationSupport(const Environment& environment) {
    return baseFolder(environment, "XDG_DATA_HOME", home(environment) + "/.local/share") + "/Orvane";
}

std::string preferencesFile(const Environment& environment) {
    return baseFolder(environment, "XDG_CONFIG_HOME", home(environment) + "/.config") + "/Orvane/preferences.json";
}

std::expected<std::string, SystemError> runtime(const Environment& environment) {
    const std::string base = baseFolder(environment, "XDG_RUNTIME_DIR", {});
    // After su the variable may still name the folder of another user, in which root can make what that user then
    // cannot use; and after a logout the folder may be gone.
    if (isOwnFolder(base) && makePrivate(base + "/orvane")) return base + "/orvane";
    return temporary(environment);
}

std::expected<std::string, SystemError> temporary(const Environment& environment) {
    const std::string named = baseFolder(environment, "TMPDIR", "/tmp");
    std::string path =
        (isFolder(named) ? named : "/tmp") + "/orvane-" + std::to_string(static_cast<unsigned long>(geteuid()));
    if (auto made = makePrivate(path); !made) return std::unexpected(made.error());
    return path;
}

std::expected<void, SystemError> makePrivate(const std::string& path) {
    if (mkdir(path.c_str(), S_IRWXU) != 0 && errno != EEXIST) {
        return std::unexpected(SystemError::last("make folder", path));
    }
    struct stat status{};
    if (lstat(path.c_str(), &status) != 0) return std::unexpected(SystemError::last("look at", path));
    if (!S_ISDIR(status.st_mode)) return std::unexpected(SystemError::of(ENOTDIR, "use", path));
    if (status.st_uid != geteuid()) {
        return std::unexpected(SystemError::of(0, path + " belongs to another user"));
    }
    if ((status.st_mode & (S_IRWXG | S_IRWXO)) != 0 && chmod(path.c_str(), S_IRWXU) != 0) {
        return std::unexpected(SystemError::last("close to others", path));
    }
    return {};
}

}  // namespace orvane::Folders
