#pragma once

#include <cstddef>
#include <deque>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace orvane {

/// Lines of a transcript, some of them written anew. Those that are not look into the bytes of the original's owner.
class NormalizedLines {
 public:
    NormalizedLines() = default;
    // A copy would look into the original's lines.
    NormalizedLines(const NormalizedLines&) = delete;
    NormalizedLines& operator=(const NormalizedLines&) = delete;
    NormalizedLines(NormalizedLines&&) noexcept = default;
    NormalizedLines& operator=(NormalizedLines&&) noexcept = default;
    ~NormalizedLines() = default;

    std::span<const std::string_view> lines() const { return lines_; }
    // Named at the call by the function that takes lines: `parse(normalized(...))`.
    operator std::span<const std::string_view>() const { return lines_; }  // NOLINT(google-explicit-constructor)

    /// Each gives the place of its line, for `rewrite` and `drop`.
    std::size_t keep(std::string_view line);
    std::size_t write(std::string line);

    /// Keeps the text for a line that is to come.
    std::string_view store(std::string text) { return written_.emplace_back(std::move(text)); }

    void rewrite(std::size_t place, std::string line);
    void drop(std::size_t place) { lines_[place] = {}; }
    /// Takes out what was dropped: places count no more.
    void finish();

 private:
    std::vector<std::string_view> lines_;
    std::deque<std::string> written_;  // texts that never move
};

}  // namespace orvane
