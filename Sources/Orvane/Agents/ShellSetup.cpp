#include "Orvane/Agents/ShellSetup.h"

#include <unistd.h>

#include <clocale>
#include <filesystem>
#include <system_error>
#include <utility>

#include "OrvaneCore/Agents/LaunchShell.h"
#include "OrvaneCore/Agents/ToolPathRescue.h"

namespace orvane {

namespace {

bool isExecutable(const std::string& path) {
    return access(path.c_str(), X_OK) == 0;
}

std::vector<std::string> namesIn(const std::string& folder) {
    std::vector<std::string> names;
    std::error_code error;
    std::filesystem::directory_iterator entry(folder, error);
    for (; !error && entry != std::filesystem::directory_iterator(); entry.increment(error))
        names.push_back(entry->path().filename().string());
    return names;
}

/// Programs told of a locale that is not installed fall back to ASCII.
std::string usableLocale() {
    std::string preferred = "en_US.UTF-8";
    const locale_t locale = newlocale(LC_CTYPE_MASK, preferred.c_str(), nullptr);
    if (locale == nullptr) return "C.UTF-8";
    freelocale(locale);
    return preferred;
}

}  // namespace

ShellSetup ShellSetup::of(Environment environment) {
    std::string shell = LaunchShell::choose(variable(environment, "SHELL"), isExecutable);
    std::vector<std::string> folders = findToolFolders(environment);
    return {.environment = std::move(environment),
            .shell = std::move(shell),
            .locale = usableLocale(),
            .toolFolders = std::move(folders)};
}

std::vector<std::string> ShellSetup::findToolFolders(const Environment& environment) {
    const std::string home = variable(environment, "HOME");
    if (home.empty()) return {};
    return ToolPathRescue::hosting(ToolPathRescue::candidates(home, namesIn), isExecutable);
}

}  // namespace orvane
