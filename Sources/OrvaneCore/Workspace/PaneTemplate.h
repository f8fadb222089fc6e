#pragma once

#include <optional>
#include <string>

#include "OrvaneCore/Workspace/PaneNode.h"

namespace orvane {

/// A layout that the user saved under a name.
struct PaneTemplate {
    Uuid id;
    std::string name;
    PaneNode node;

    bool operator==(const PaneTemplate&) const = default;

    JsonValue encode() const;
    /// None without a readable tree. A missing id is replaced by a fresh one.
    static std::optional<PaneTemplate> decode(const JsonValue& json);
};

}  // namespace orvane
