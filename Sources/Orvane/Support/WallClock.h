#pragma once

#include "OrvaneCore/Support/Date.h"
#include "Platform/MainLoop.h"

namespace orvane {

inline Date dateOf(WallTime time) {
    return Date{std::chrono::duration<double>(time.time_since_epoch()).count()};
}

inline Duration durationOf(Seconds seconds) {
    return std::chrono::duration_cast<Duration>(seconds);
}

}  // namespace orvane
