#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "OrvaneCore/Support/Json.h"
#include "OrvaneCore/Support/Uuid.h"

namespace orvane {

/// A folder that the user registered.
struct Project {
    Uuid id;
    /// The last component of the path, unless the user renamed it.
    std::string name;
    /// Absolute.
    std::string path;
    /// Into `ProjectPalette`, which cycles.
    std::int64_t colorIndex = 0;
    /// Overrides the palette; in the form of `ProjectPalette::colorHex`.
    std::optional<std::string> customColorHex;

    bool operator==(const Project&) const = default;

    /// The colour to show, RRGGBB.
    std::string colorHex() const;

    JsonValue encode() const;
    /// None without a path. A missing id is replaced by a fresh one, a missing name by that of the folder; a custom
    /// colour that is none is left out.
    static std::optional<Project> decode(const JsonValue& json);
};

}  // namespace orvane
