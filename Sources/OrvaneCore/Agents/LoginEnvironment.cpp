#include "OrvaneCore/Agents/LoginEnvironment.h"

#include "OrvaneCore/Agents/ToolPathRescue.h"
#include "OrvaneCore/Support/Text.h"

namespace orvane::LoginEnvironment {

std::optional<EnvironmentEntries> parse(std::string_view output) {
    constexpr std::string_view marker("\0OV-ENV\0", 8);
    const std::size_t start = output.find(marker);
    if (output.size() > maximumOutputSize || start == std::string_view::npos) return std::nullopt;
    output.remove_prefix(start + marker.size());
    EnvironmentEntries entries;
    for (std::size_t end = 0; (end = output.find('\0')) != std::string_view::npos; output.remove_prefix(end + 1)) {
        const std::string_view entry = output.substr(0, end);
        if (!EnvironmentList::name(entry).empty() && Text::isValidUtf8(entry)) entries.emplace_back(entry);
    }
    return entries.empty() ? std::nullopt : std::optional(std::move(entries));
}

EnvironmentEntries rescued(const EnvironmentEntries& captured, const std::vector<std::string>& hosts) {
    const std::string path = EnvironmentList::value(captured, "PATH").value_or("");
    return ToolPathRescue::appending(ToolPathRescue::missing(hosts, path), captured);
}

}  // namespace orvane::LoginEnvironment
