#include "OrvaneCore/Support/Needle.h"

#include <bit>
#include <cstring>

namespace orvane {

namespace {

constexpr std::size_t width = 16;

// A vector type of GCC and Clang, for any processor; 0xFF in each byte for which a comparison holds.
using Block = std::uint8_t __attribute__((vector_size(width)));

Block blockAt(const char* bytes) {
    Block block;
    std::memcpy(&block, bytes, width);
    return block;
}

Block filledWith(char letter) {
    return Block{} + static_cast<std::uint8_t>(letter);
}

bool isAnySet(Block block) {
    std::array<std::uint64_t, 2> halves{};
    std::memcpy(halves.data(), &block, width);
    return (halves[0] | halves[1]) != 0;
}

}  // namespace

std::size_t Needle::findIn(std::string_view line, std::size_t from) const {
    if (text_.size() < 2) return line.find(text_, from);
    if (line.size() < text_.size()) return npos;
    const std::size_t last = line.size() - text_.size();
    const Block first = filledWith(text_[probes_[0]]);
    const Block second = filledWith(text_[probes_[1]]);
    const auto isAt = [&](std::size_t at) { return std::memcmp(line.data() + at, text_.data(), text_.size()) == 0; };
    std::size_t at = from;
    for (; at + width <= last + 1; at += width) {
        const Block hits = Block(blockAt(line.data() + at + probes_[0]) == first) &
                           Block(blockAt(line.data() + at + probes_[1]) == second);
        if (!isAnySet(hits)) continue;
        for (std::size_t place = 0; place < width; ++place) {
            if (hits[place] != 0 && isAt(at + place)) return at + place;
        }
    }
    for (; at <= last; ++at) {
        if (isAt(at)) return at;
    }
    return npos;
}

}  // namespace orvane
