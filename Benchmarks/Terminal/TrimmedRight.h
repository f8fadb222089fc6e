#pragma once

#include <string>

namespace orvane::benchmark {

/// Cells that were written as blanks and cells that were not written look alike.
inline std::string trimmedRight(std::string text) {
    text.resize(text.find_last_not_of(' ') + 1);
    return text;
}

}  // namespace orvane::benchmark
