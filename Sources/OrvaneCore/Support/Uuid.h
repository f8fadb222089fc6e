#pragma once

#include <array>
#include <compare>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace orvane {

/// A 128-bit identifier (RFC 4122). The zero value is "no id" and is never handed out by `random`.
class Uuid {
 public:
    constexpr Uuid() = default;
    constexpr explicit Uuid(const std::array<std::uint8_t, 16>& value) : bytes_(value) {}

    /// A fresh version 4 id from the system's random source.
    static Uuid random();

    /// Reads the 8-4-4-4-12 form in either case; anything else is none.
    static std::optional<Uuid> parse(std::string_view text);

    /// The form kept in files.
    std::string upperText() const;
    /// The form people see and type.
    std::string lowerText() const;

    const std::array<std::uint8_t, 16>& bytes() const { return bytes_; }

    auto operator<=>(const Uuid&) const = default;

 private:
    std::string text(const char* digits) const;

    std::array<std::uint8_t, 16> bytes_{};
};

}  // namespace orvane

template <>
struct std::hash<orvane::Uuid> {
    std::size_t operator()(const orvane::Uuid& id) const noexcept;
};
