#pragma once

#include <optional>
#include <string>

namespace orvane {

/// One option of a dialog as an agent draws it.
struct PrintedOption {
    int number = 0;  ///< as printed; 0 when the row has none and only the arrow keys reach it
    std::string label;
    std::string detail;            ///< what is explained beside or below the label
    bool selected = false;         ///< Return would take it
    bool freeText = false;         ///< opens a field for words
    std::optional<bool> isTicked;  ///< of a list from which several may be taken

    bool operator==(const PrintedOption&) const = default;
};

}  // namespace orvane
