#include "TerminalEmulator/Engine/LabColor.h"

#include <algorithm>
#include <cmath>

namespace orvane {
namespace {

// White of D65 for the 2 degree observer, and the matrices of sRGB (IEC 61966-2-1).
constexpr double whiteX = 0.95047;
constexpr double whiteZ = 1.08883;
// Below this the cube root of CIE Lab goes on as a straight line.
constexpr double linearBelow = 216.0 / 24389.0;
constexpr double lineSlope = 24389.0 / 27.0;

double linearLight(std::uint16_t channel) {
    const double value = channel / 65535.0;
    return value <= 0.04045 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
}

std::uint8_t encoded(double light) {
    const double clipped = std::clamp(light, 0.0, 1.0);
    const double value = clipped <= 0.0031308 ? clipped * 12.92 : 1.055 * std::pow(clipped, 1 / 2.4) - 0.055;
    return static_cast<std::uint8_t>(std::lround(value * 255));
}

double toLab(double value) {
    return value > linearBelow ? std::cbrt(value) : (lineSlope * value + 16) / 116;
}

double fromLab(double value) {
    const double cube = value * value * value;
    return cube > linearBelow ? cube : (116 * value - 16) / lineSlope;
}

}  // namespace

LabColor LabColor::from(const TerminalColor& color) {
    const double red = linearLight(color.red);
    const double green = linearLight(color.green);
    const double blue = linearLight(color.blue);
    const double x = toLab((0.4124564 * red + 0.3575761 * green + 0.1804375 * blue) / whiteX);
    const double y = toLab(0.2126729 * red + 0.7151522 * green + 0.0721750 * blue);
    const double z = toLab((0.0193339 * red + 0.1191920 * green + 0.9503041 * blue) / whiteZ);
    return {.lightness = 116 * y - 16, .a = 500 * (x - y), .b = 200 * (y - z)};
}

TerminalColor LabColor::toTerminalColor() const {
    const double middle = (lightness + 16) / 116;
    const double x = fromLab(middle + a / 500) * whiteX;
    const double y = fromLab(middle);
    const double z = fromLab(middle - b / 200) * whiteZ;
    return TerminalColor::fromBytes(encoded(3.2404542 * x - 1.5371385 * y - 0.4985314 * z),
                                    encoded(-0.9692660 * x + 1.8760108 * y + 0.0415560 * z),
                                    encoded(0.0556434 * x - 0.2040259 * y + 1.0572252 * z));
}

LabColor LabColor::mixed(const LabColor& other, double share) const {
    return {.lightness = std::lerp(lightness, other.lightness, share),
            .a = std::lerp(a, other.a, share),
            .b = std::lerp(b, other.b, share)};
}

}  // namespace orvane
