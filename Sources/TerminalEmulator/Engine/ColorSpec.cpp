#include "TerminalEmulator/Engine/ColorSpec.h"

#include <array>
#include <charconv>
#include <cmath>
#include <cstdint>

#include <fmt/format.h>

#include "TerminalEmulator/Engine/ColorNames.h"

namespace orvane::ColorSpec {
namespace {

constexpr std::size_t maximumNameLength = 64;

using Channels = std::array<std::string_view, 3>;
using Channel = std::optional<std::uint8_t> (*)(std::string_view);

/// The three parts between two slashes.
std::optional<Channels> split(std::string_view text) {
    const std::size_t first = text.find('/');
    const std::size_t second = text.find('/', first + 1);
    if (first == std::string_view::npos || second == std::string_view::npos) return std::nullopt;
    return Channels{text.substr(0, first), text.substr(first + 1, second - first - 1), text.substr(second + 1)};
}

std::optional<unsigned> hexNumber(std::string_view digits) {
    unsigned value = 0;
    if (digits.empty() || digits.size() > 4) return std::nullopt;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), value, 16);
    if (error != std::errc() || end != digits.data() + digits.size()) return std::nullopt;
    return value;
}

/// "rgb:": the digits are a share of the greatest number they can make.
std::optional<std::uint8_t> scaledChannel(std::string_view digits) {
    const auto value = hexNumber(digits);
    if (!value) return std::nullopt;
    const unsigned most = (1U << (4 * digits.size())) - 1;
    return static_cast<std::uint8_t>((*value * 65535U / most) >> 8);
}

/// "#": the digits are the upper bits.
std::optional<std::uint8_t> upperChannel(std::string_view digits) {
    const auto value = hexNumber(digits);
    if (!value) return std::nullopt;
    return static_cast<std::uint8_t>((*value << (16 - 4 * digits.size())) >> 8);
}

std::optional<std::uint8_t> fractionChannel(std::string_view text) {
    double value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || end != text.data() + text.size() || !(value >= 0 && value <= 1)) return std::nullopt;
    return static_cast<std::uint8_t>(std::lround(value * 255));
}

std::optional<TerminalColor> color(const std::optional<Channels>& channels, Channel channel) {
    if (!channels) return std::nullopt;
    const auto red = channel((*channels)[0]);
    const auto green = channel((*channels)[1]);
    const auto blue = channel((*channels)[2]);
    if (!red || !green || !blue) return std::nullopt;
    return TerminalColor::fromBytes(*red, *green, *blue);
}

std::optional<Channels> thirds(std::string_view digits) {
    if (digits.size() % 3 != 0) return std::nullopt;
    const std::size_t size = digits.size() / 3;
    return Channels{digits.substr(0, size), digits.substr(size, size), digits.substr(2 * size)};
}

char lowered(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

std::string plainName(std::string_view text) {
    std::string name;
    for (const char c : text) {
        if (c != ' ') name += lowered(c);
    }
    return name;
}

}  // namespace

std::optional<TerminalColor> parse(std::string_view text) {
    if (text.size() > maximumNameLength) return std::nullopt;
    if (text.starts_with('#')) return color(thirds(text.substr(1)), upperChannel);
    const std::string name = plainName(text);
    const std::string_view view = name;
    if (view.starts_with("rgb:")) return color(split(view.substr(4)), scaledChannel);
    if (view.starts_with("rgbi:")) return color(split(view.substr(5)), fractionChannel);
    return colorNamed(view);
}

std::string format(const TerminalColor& color) {
    return fmt::format("rgb:{:04x}/{:04x}/{:04x}", color.red, color.green, color.blue);
}

}  // namespace orvane::ColorSpec
