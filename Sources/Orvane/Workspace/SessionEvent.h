#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "OrvaneCore/Support/Json.h"
#include "OrvaneCore/Support/Uuid.h"

namespace orvane {

/// One change of a session's status. A session that was just made has no `from`, one that was closed no `to`.
struct SessionEvent {
    /// The store's revision after the change; it rises with every change of any session.
    std::uint64_t revision = 0;
    Uuid session;
    std::optional<std::string> from;
    std::optional<std::string> to;

    bool operator==(const SessionEvent&) const = default;

    /// {"from":…,"revision":…,"session":…,"to":…}; what is absent is null.
    JsonValue encode() const;
};

}  // namespace orvane
