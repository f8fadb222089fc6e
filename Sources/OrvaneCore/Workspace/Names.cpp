#include "OrvaneCore/Workspace/Names.h"

namespace orvane {

std::string_view trimmed(std::string_view text) {
    constexpr std::string_view blanks = " \t\n\v\f\r";
    const std::size_t first = text.find_first_not_of(blanks);
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

std::string lastPathComponent(std::string_view path) {
    const std::size_t last = path.find_last_not_of('/');
    if (last == std::string_view::npos) return path.empty() ? "" : "/";
    path = path.substr(0, last + 1);
    return std::string(path.substr(path.rfind('/') + 1));  // npos + 1 is 0: the whole text
}

}  // namespace orvane
