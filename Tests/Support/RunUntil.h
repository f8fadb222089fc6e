#pragma once

#include <functional>

#include "Platform/AsioMainLoop.h"
#include "Platform/ManualMainLoop.h"

namespace orvane {

/// Serves the loop until the condition holds; false when it still does not after a long while.
inline bool runUntil(ManualMainLoop& loop, const std::function<bool()>& condition) {
    return loop.runUntil(condition);
}
inline bool runUntil(AsioMainLoop& loop, const std::function<bool()>& condition) {
    const auto poll = loop.every(std::chrono::milliseconds(1), {}, [&] {
        if (condition()) loop.stop();
    });
    const auto limit = loop.after(std::chrono::seconds(20), [&] { loop.stop(); });
    loop.run();
    return condition();
}

}  // namespace orvane
