#pragma once

#include <fmt/format.h>

#include <iterator>
#include <random>
#include <string>
#include <string_view>
#include <utility>

#include "Terminal/Geometry.h"

namespace orvane::benchmark {

/// What a program writes, being made up: always the same for one geometry.
class Script {
 public:
    explicit Script(Geometry geometry) : geometry_(geometry) {}

    int cols() const { return geometry_.cols; }
    int rows() const { return geometry_.rows; }
    const std::string& bytes() const { return bytes_; }

    /// From 0 up to, not including, the limit; 0 when there is no room, as in a very small geometry.
    int below(int limit) { return limit > 0 ? static_cast<int>(random_() % static_cast<unsigned>(limit)) : 0; }
    /// Counts up from 0.
    int next() { return number_++; }

    template <typename... Arguments>
    void put(fmt::format_string<Arguments...> format, Arguments&&... arguments) {
        fmt::format_to(std::back_inserter(bytes_), format, std::forward<Arguments>(arguments)...);
    }

    void repeat(std::string_view text, int count) {
        for (; count > 0; --count)
            bytes_ += text;
    }

    /// Small letters with a blank here and there.
    void letters(int count) {
        for (; count > 0; --count) {
            const int letter = below(30);
            bytes_ += letter < 26 ? static_cast<char>('a' + letter) : ' ';
        }
    }

    /// CUP; counted from 0.
    void moveTo(int row, int col) { put("\x1B[{};{}H", row + 1, col + 1); }

 private:
    Geometry geometry_;
    std::mt19937 random_{1};  // its numbers are the same with every library
    int number_ = 0;
    std::string bytes_;
};

}  // namespace orvane::benchmark
