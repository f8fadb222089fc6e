#include "OrvaneShell/View/LinkText.h"

#include <fmt/format.h>

#include <algorithm>

namespace orvane {

namespace {

// The widely followed proposal for OSC 8 names 2083 bytes for the URI and 250 for the id as what terminals take.
constexpr std::size_t longestUri = 2083;
constexpr std::size_t longestId = 250;

std::string encoded(std::string_view text) {
    std::string result;
    result.reserve(text.size());
    for (const char byte : text) {
        if (byte > 0x20 && byte < 0x7F) {
            result += byte;
        } else {
            result += fmt::format("%{:02X}", static_cast<unsigned char>(byte));
        }
    }
    return result;
}

/// Parameters are "key=value", set apart by colons.
std::string_view idOf(std::string_view parameters) {
    while (!parameters.empty()) {
        const std::string_view parameter = parameters.substr(0, parameters.find(':'));
        if (parameter.starts_with("id=")) return parameter.substr(3);
        parameters.remove_prefix(std::min(parameter.size() + 1, parameters.size()));
    }
    return {};
}

}  // namespace

std::string outerLinkText(std::string_view target, std::uint16_t handle) {
    const std::size_t separator = target.find(';');
    if (separator == std::string_view::npos) return {};
    const std::string uri = encoded(target.substr(separator + 1));
    std::string id = encoded(idOf(target.substr(0, separator)));
    if (uri.empty() || uri.size() > longestUri) return {};
    if (id.empty() || id.size() > longestId) id = fmt::format("orvane-{}", handle);
    return fmt::format("id={};{}", id, uri);
}

}  // namespace orvane
