#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace orvane {

/// What follows "OSC 8 ;" for a link that a program gave as "params;URI": an id and the URI. A link without id gets one
/// of its handle, so that its pieces on several rows, which are written each for itself, stay one link. Bytes that are
/// not printable ASCII are percent-encoded. Empty for a link that is none or too long for terminals.
std::string outerLinkText(std::string_view target, std::uint16_t handle);

}  // namespace orvane
