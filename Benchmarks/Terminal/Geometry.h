#pragma once

#include <fmt/format.h>

#include <charconv>
#include <optional>
#include <string>
#include <string_view>

namespace orvane::benchmark {

struct Geometry {
    int cols = 80;
    int rows = 25;

    std::string name() const { return fmt::format("{}x{}", cols, rows); }

    /// Reads "80x25"; sizes from 2 by 1 up to 1000 by 1000.
    static std::optional<Geometry> parse(std::string_view text) {
        Geometry geometry;
        const char* const end = text.data() + text.size();
        const auto cols = std::from_chars(text.data(), end, geometry.cols);
        if (cols.ec != std::errc{} || cols.ptr == end || *cols.ptr != 'x') return {};
        const auto rows = std::from_chars(cols.ptr + 1, end, geometry.rows);
        if (rows.ec != std::errc{} || rows.ptr != end) return {};
        if (geometry.cols < 2 || geometry.cols > 1000 || geometry.rows < 1 || geometry.rows > 1000) return {};
        return geometry;
    }
};

}  // namespace orvane::benchmark
