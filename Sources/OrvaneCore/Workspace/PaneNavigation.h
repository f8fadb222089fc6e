#pragma once

namespace orvane::PaneNavigation {

/// The index that lies `offset` places from `current` in a ring of `count`; 0 when the ring is empty.
int neighbourIndex(int current, int count, int offset);

}  // namespace orvane::PaneNavigation
