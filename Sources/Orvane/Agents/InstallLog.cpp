#include "Orvane/Agents/InstallLog.h"

#include <algorithm>

namespace orvane {

void InstallLog::append(std::string_view line) {
    text_.append(line).append("\n");
    if (text_.size() <= maximumSizeInBytes) return;
    // A quarter at once, or a long installation would move all of it for every line.
    const std::size_t end = text_.find('\n', text_.size() - maximumSizeInBytes / 4 * 3);
    const std::size_t dropped = std::min(end, text_.size() - 1) + 1;
    text_.erase(0, dropped);
    runStart_ -= std::min(dropped, runStart_);
}

}  // namespace orvane
