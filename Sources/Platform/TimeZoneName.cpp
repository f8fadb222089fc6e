#include "Platform/TimeZoneName.h"

#include <filesystem>
#include <string_view>

#include "Platform/Files.h"

namespace orvane {

namespace {

/// What lies below the folder of the database in a path such as /usr/share/zoneinfo/Europe/Paris.
std::string belowDatabase(const std::string& path) {
    constexpr std::string_view folder = "/zoneinfo/";
    const auto found = path.find(folder);
    return found == std::string::npos ? std::string() : path.substr(found + folder.size());
}

std::string fromFile() {
    constexpr std::size_t longestName = 4096;
    const auto text = readWholeFile("/etc/timezone", longestName);
    return text ? text->substr(0, text->find_first_of(" \n")) : std::string();
}

}  // namespace

std::string timeZoneName(const Environment& environment) {
    std::string named = variable(environment, "TZ");
    if (named.starts_with(':')) named.erase(0, 1);
    if (named.starts_with('/')) named = belowDatabase(named);
    if (!named.empty()) return named;
    std::error_code error;
    const auto link = std::filesystem::read_symlink("/etc/localtime", error);
    if (const std::string zone = belowDatabase(link.string()); !error && !zone.empty()) return zone;
    const std::string zone = fromFile();
    return zone.empty() ? "UTC" : zone;
}

}  // namespace orvane
