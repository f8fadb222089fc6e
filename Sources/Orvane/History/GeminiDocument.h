#pragma once

#include <expected>
#include <string>
#include <vector>

#include "Platform/SystemError.h"

namespace orvane {

/// Transcripts in the older form of Gemini CLI: one JSON document, not lines. Blocks on the disk.
namespace GeminiDocument {

/// By its name.
inline bool isOne(const std::string& path) {
    return path.ends_with(".json");
}

/// As the lines of the newer form; none of a malformed document.
std::expected<std::vector<std::string>, SystemError> lines(const std::string& path);

}  // namespace GeminiDocument

}  // namespace orvane
