#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace orvane {

/// Makes of the bytes that a program prints the lines that a person would find on a terminal afterwards: of what was
/// drawn over itself, such as a progress bar, the last drawing; colours and other escape sequences are gone; bytes that
/// are no UTF-8 become U+FFFD. The bytes may be split anywhere.
class OutputLines {
 public:
    /// In bytes, with the escape sequences. A line that grows beyond it without an end is broken there.
    static constexpr std::size_t longestLine = std::size_t{16} * 1024;

    /// The lines that these bytes end.
    std::vector<std::string> append(std::string_view bytes);
    /// The last line, when the program did not end it.
    std::optional<std::string> finish();

    /// One line, without its end, as it looks in the end.
    static std::string shown(std::string_view line);

 private:
    std::string unfinished_;
};

}  // namespace orvane
