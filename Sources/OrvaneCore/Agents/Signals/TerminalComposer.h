#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace orvane {

/// The line in which an agent takes its prompt.
namespace TerminalComposer {

inline constexpr int maximumRows = 32;  ///< looked at, from the bottom

/// One row of a composer.
struct Cell {
    std::string text;
    std::optional<int> width;  ///< columns for text, where a border on the right tells
    int filled = 0;            ///< columns of the text
    int column = 0;            ///< where it begins, right behind the marker's blank
    bool operator==(const Cell&) const = default;
};

/// What is typed in the lowest composer: its rows joined by newlines; empty when it is empty or holds a suggestion
/// (drawn faint, or one of the agents' own); nothing when there is no composer. `dimmed` may be shorter than the rows.
std::optional<std::string> draft(std::span<const std::string> visibleRows, const std::vector<bool>& dimmed);

/// The same for the composer whose marker is in the first of these rows and that ends with them. Also the markers of
/// modes count: `!`, `#` and `*`.
std::optional<std::string> draftOf(std::span<const std::string> rows, const std::vector<bool>& dimmed);

/// White space, prompt markers and borders: what a composer has around its text. Of one character.
bool isChrome(std::string_view character);

}  // namespace TerminalComposer

}  // namespace orvane
