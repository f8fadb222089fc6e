#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace orvane {

/// Titles, the stacks they are pushed on, and how they are set and told.
struct TitleState {
    static constexpr std::size_t maximumStack = 16;
    static constexpr std::size_t maximumLength = 4096;  ///< in bytes; longer titles are cut at a character

    std::string terminalTitle;
    std::string iconTitle;
    std::vector<std::string> terminalTitleStack;
    std::vector<std::string> terminalIconStack;
    bool xtermTitleSetHex = false;
    bool xtermTitleQueryHex = false;
    bool xtermTitleSetUtf = true;
    bool xtermTitleQueryUtf = true;

    bool operator==(const TitleState&) const = default;
};

}  // namespace orvane
