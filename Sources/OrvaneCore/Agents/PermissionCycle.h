#pragma once

#include <string>
#include <string_view>
#include <vector>

/// The permission modes of Claude Code in the order in which its key steps through them.
namespace orvane::PermissionCycle {

enum class Bypass { excluded, included };

/// "default", "acceptEdits", "plan", and last "bypassPermissions" where it is part of the cycle.
std::vector<std::string> modes(Bypass bypass);

/// How often the key must be pressed; 0 for a mode that is not in the cycle. No current mode counts as "default".
int steps(std::string_view current, std::string_view wanted, Bypass bypass);

}  // namespace orvane::PermissionCycle
