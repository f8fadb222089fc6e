#include "OrvaneCore/Workspace/PaneNavigation.h"

#include <cstdint>

namespace orvane::PaneNavigation {

int neighbourIndex(int current, int count, int offset) {
    if (count < 1) return 0;
    const std::int64_t target = std::int64_t{current} + offset;
    return static_cast<int>((target % count + count) % count);
}

}  // namespace orvane::PaneNavigation
