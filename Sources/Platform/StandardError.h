#pragma once

#include <cstdio>

namespace orvane {

/// Says on standard error what nobody else can be told: "orvane: WHAT: WHY", in one write. From any thread.
inline void reportOnStandardError(const char* what, const char* why) noexcept {
    dprintf(fileno(stderr), "orvane: %s: %s\n", what, why);
}

}  // namespace orvane
