#include "OrvaneCore/Agents/PermissionCycle.h"

#include <algorithm>

namespace orvane::PermissionCycle {

std::vector<std::string> modes(Bypass bypass) {
    std::vector<std::string> modes = {"default", "acceptEdits", "plan"};
    if (bypass == Bypass::included) modes.emplace_back("bypassPermissions");
    return modes;
}

int steps(std::string_view current, std::string_view wanted, Bypass bypass) {
    const std::vector<std::string> cycle = modes(bypass);
    const auto place = [&](std::string_view mode) {
        return static_cast<int>(std::ranges::find(cycle, mode) - cycle.begin());
    };
    const auto count = static_cast<int>(cycle.size());
    const int from = place(current.empty() ? "default" : current);
    const int to = place(wanted);
    if (from == count || to == count) return 0;
    return (to - from + count) % count;
}

}  // namespace orvane::PermissionCycle
