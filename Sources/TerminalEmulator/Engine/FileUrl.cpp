#include "TerminalEmulator/Engine/FileUrl.h"

#include <algorithm>

#include "TerminalEmulator/Engine/Hex.h"

namespace orvane::FileUrl {
namespace {

char lowered(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

bool equalsIgnoringCase(std::string_view a, std::string_view b) {
    return std::ranges::equal(a, b, {}, lowered, lowered);
}

bool hasControls(std::string_view text) {
    return std::ranges::any_of(text, [](char c) { return static_cast<unsigned char>(c) < 0x20 || c == 0x7F; });
}

/// A percent sign that begins no escape stands for itself: not every shell escapes it.
std::string unescaped(std::string_view text) {
    std::string path;
    while (!text.empty()) {
        const auto byte = text.front() == '%' && text.size() >= 3 ? Hex::decode(text.substr(1, 2)) : std::nullopt;
        path += byte ? byte->front() : text.front();
        text.remove_prefix(byte ? 3 : 1);
    }
    return path;
}

}  // namespace

std::optional<std::string> localPath(std::string_view url, std::string_view hostName) {
    constexpr std::string_view scheme = "file:";
    if (url.size() > maximumLength || !equalsIgnoringCase(url.substr(0, scheme.size()), scheme)) return std::nullopt;
    std::string_view rest = url.substr(scheme.size());
    if (rest.starts_with("//")) {
        const std::size_t end = std::min(rest.find('/', 2), rest.size());
        const std::string_view host = rest.substr(2, end - 2);
        const bool isHere = host.empty() || equalsIgnoringCase(host, "localhost") || equalsIgnoringCase(host, hostName);
        if (!isHere) return std::nullopt;
        rest.remove_prefix(end);
    }
    std::string path = unescaped(rest);
    if (!path.starts_with('/') || hasControls(path)) return std::nullopt;
    return path;
}

}  // namespace orvane::FileUrl
