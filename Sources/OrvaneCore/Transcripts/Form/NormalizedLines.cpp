#include "OrvaneCore/Transcripts/Form/NormalizedLines.h"

#include <utility>

namespace orvane {

std::size_t NormalizedLines::keep(std::string_view line) {
    lines_.push_back(line);
    return lines_.size() - 1;
}

std::size_t NormalizedLines::write(std::string line) {
    return keep(store(std::move(line)));
}

void NormalizedLines::rewrite(std::size_t place, std::string line) {
    lines_[place] = store(std::move(line));
}

void NormalizedLines::finish() {
    std::erase_if(lines_, [](std::string_view line) { return line.empty(); });
}

}  // namespace orvane
