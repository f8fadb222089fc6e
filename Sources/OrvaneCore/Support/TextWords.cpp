#include "OrvaneCore/Support/TextWords.h"

#include <algorithm>

#include "OrvaneCore/Support/Text.h"

namespace orvane {

std::vector<std::string> textWords(std::string_view text) {
    const std::string line = Text::oneLine(text);
    std::vector<std::string> words;
    for (std::size_t at = 0; at < line.size();) {
        const auto end = std::min(line.find(' ', at), line.size());
        if (end > at) words.push_back(line.substr(at, end - at));
        at = end + 1;
    }
    return words;
}

}  // namespace orvane
