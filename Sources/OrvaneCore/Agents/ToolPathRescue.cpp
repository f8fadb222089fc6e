#include "OrvaneCore/Agents/ToolPathRescue.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <limits>
#include <tuple>

#include "OrvaneCore/Support/ShellText.h"

namespace orvane::ToolPathRescue {

namespace {

struct VersionManager {
    std::string_view versionsFolder;  ///< below the home folder
    std::string_view binFolder;       ///< below the folder of a version
};

constexpr std::array versionManagers = {
    VersionManager{.versionsFolder = ".nvm/versions/node", .binFolder = "bin"},
    VersionManager{.versionsFolder = ".fnm/node-versions", .binFolder = "installation/bin"},
    VersionManager{.versionsFolder = "Library/Application Support/fnm/node-versions", .binFolder = "installation/bin"},
    VersionManager{.versionsFolder = ".local/share/fnm/node-versions", .binFolder = "installation/bin"},
};

/// Those without a leading slash are below the home folder.
constexpr std::array<std::string_view, 11> plainFolders = {
    ".volta/bin",        ".bun/bin",          "Library/pnpm",
    ".local/share/pnpm", ".yarn/bin",         ".npm-global/bin",
    ".local/bin",        "/opt/homebrew/bin", "/home/linuxbrew/.linuxbrew/bin",
    ".linuxbrew/bin",    "/usr/local/bin"};

/// What versions are compared by: their numbers, then whether they are a release, then the text.
using VersionRank = std::tuple<std::vector<std::uint64_t>, bool, std::string>;

VersionRank rank(std::string_view version) {
    if (version.starts_with('v')) version.remove_prefix(1);
    std::vector<std::uint64_t> numbers;
    const char* const end = version.data() + version.size();
    const char* at = version.data();
    while (at != end) {
        std::uint64_t number = std::numeric_limits<std::uint64_t>::max();  // stays when there are too many digits
        const char* const next = std::from_chars(at, end, number).ptr;
        if (next == at) break;
        numbers.push_back(number);
        at = next;
        if (at == end || *at != '.') break;
        ++at;
    }
    return {std::move(numbers), at == end, std::string(at, end)};
}

}  // namespace

std::vector<std::string> candidates(const std::string& home, const VersionLister& versions) {
    std::vector<std::string> folders;
    for (const VersionManager& manager : versionManagers) {
        const std::string base = joinedPath(home, manager.versionsFolder);
        std::vector<std::string> names = versions(base);
        std::ranges::sort(names, std::greater(), rank);
        for (const std::string& name : names)
            folders.push_back(fmt::format("{}/{}/{}", base, name, manager.binFolder));
    }
    for (const std::string_view folder : plainFolders)
        folders.push_back(folder.starts_with('/') ? std::string(folder) : joinedPath(home, folder));
    return folders;
}

std::vector<std::string> hosting(const std::vector<std::string>& candidates, const PathTest& isExecutable) {
    std::vector<std::string> hosts;
    for (const std::string& folder : candidates) {
        if (std::ranges::find(hosts, folder) != hosts.end()) continue;
        const bool isHost = std::ranges::any_of(
            binaries, [&](std::string_view binary) { return isExecutable(joinedPath(folder, binary)); });
        if (isHost) hosts.push_back(folder);
    }
    return hosts;
}

std::vector<std::string> missing(const std::vector<std::string>& hosts, std::string_view path) {
    const std::string parts = fmt::format(":{}:", path);
    std::vector<std::string> folders;
    std::ranges::copy_if(hosts, std::back_inserter(folders),
                         [&](const std::string& host) { return !parts.contains(fmt::format(":{}:", host)); });
    return folders;
}

EnvironmentEntries appending(const std::vector<std::string>& folders, EnvironmentEntries environment) {
    if (folders.empty()) return environment;
    // An empty part of PATH would mean the working directory.
    std::string path = EnvironmentList::value(environment, "PATH").value_or("");
    if (path.empty()) path = "/usr/bin:/bin:/usr/sbin:/sbin";
    EnvironmentList::set(environment, "PATH", fmt::format("{}:{}", path, fmt::join(folders, ":")));
    return environment;
}

std::string shellPrelude(const std::vector<std::string>& folders) {
    if (folders.empty()) return "";
    std::string prelude = "for ov_d in";
    for (const std::string& folder : folders)
        prelude.append(" ").append(shellQuoted(folder));
    return prelude +
           R"(; do case ":$PATH:" in *":$ov_d:"*) ;; *) PATH="$PATH:$ov_d";; esac; done; export PATH; unset ov_d; )";
}

}  // namespace orvane::ToolPathRescue
