#include "OrvaneCore/Support/Paths.h"

namespace orvane {

std::string lastPathComponent(std::string_view path) {
    const std::size_t last = path.find_last_not_of('/');
    if (last == std::string_view::npos) return path.empty() ? "" : "/";
    path = path.substr(0, last + 1);
    return std::string(path.substr(path.rfind('/') + 1));  // npos + 1 is 0: the whole text
}

std::string joinedPath(std::string_view folder, std::string_view rest) {
    std::string path(folder.substr(0, folder.find_last_not_of('/') + 1));  // npos + 1 is 0: the root
    path += '/';
    path += rest;
    return path;
}

}  // namespace orvane
