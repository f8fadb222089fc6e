#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

/// How far text goes before a control code ends it. `size` bytes may be read.
namespace orvane::TextScan {

/// Eight bytes at a time within one word; for processors without vectors, and the ends of slices.
namespace Words {

inline constexpr std::uint64_t lowBits = 0x0101010101010101;
inline constexpr std::uint64_t highBits = 0x8080808080808080;

inline std::uint64_t load(const std::uint8_t* bytes) {
    std::uint64_t word = 0;
    std::memcpy(&word, bytes, sizeof word);
    if constexpr (std::endian::native == std::endian::big) word = __builtin_bswap64(word);
    return word;
}

/// Sets the high bit of each byte below 0x20. Subtracting lets a byte that is found borrow from the one behind it, so
/// only the first is certain; it is the only one asked for.
inline std::uint64_t controls(std::uint64_t word) {
    return (word - lowBits * 0x20) & ~word & highBits;
}

/// The same of each byte that is no printable ASCII: also of DEL and of all from 0x80 on.
inline std::uint64_t others(std::uint64_t word) {
    const std::uint64_t del = word ^ (lowBits * 0x7F);
    return controls(word) | ((del - lowBits) & ~del & highBits) | (word & highBits);
}

inline std::size_t firstOf(std::uint64_t found) {
    return static_cast<std::size_t>(std::countr_zero(found)) / 8;
}

inline std::size_t textLength(const std::uint8_t* bytes, std::size_t size) {
    std::size_t at = 0;
    for (; at + 8 <= size; at += 8) {
        if (const std::uint64_t found = controls(load(bytes + at))) return at + firstOf(found);
    }
    while (at < size && bytes[at] >= 0x20)
        ++at;
    return at;
}

inline std::size_t plainLength(const std::uint8_t* bytes, std::size_t size) {
    std::size_t at = 0;
    for (; at + 8 <= size; at += 8) {
        if (const std::uint64_t found = others(load(bytes + at))) return at + firstOf(found);
    }
    while (at < size && bytes[at] >= 0x20 && bytes[at] < 0x7F)
        ++at;
    return at;
}

}  // namespace Words

#if defined(__SSE2__)

inline unsigned maskOf(__m128i found) {
    return static_cast<unsigned>(_mm_movemask_epi8(found));
}

inline __m128i load(const std::uint8_t* bytes) {
    return _mm_loadu_si128(reinterpret_cast<const __m128i*>(bytes));
}

/// The bytes before the first one below 0x20: text in UTF-8, and DEL.
inline std::size_t textLength(const std::uint8_t* bytes, std::size_t size) {
    std::size_t at = 0;
    const __m128i lastControl = _mm_set1_epi8(0x1F);
    for (; at + 16 <= size; at += 16) {
        const __m128i block = load(bytes + at);
        if (const unsigned found = maskOf(_mm_cmpeq_epi8(_mm_min_epu8(block, lastControl), block))) {
            return at + static_cast<std::size_t>(std::countr_zero(found));
        }
    }
    return at + Words::textLength(bytes + at, size - at);
}

/// The bytes before the first one that is no printable ASCII (0x20 to 0x7E).
inline std::size_t plainLength(const std::uint8_t* bytes, std::size_t size) {
    std::size_t at = 0;
    const __m128i blank = _mm_set1_epi8(0x20);
    const __m128i del = _mm_set1_epi8(0x7F);
    for (; at + 16 <= size; at += 16) {
        const __m128i block = load(bytes + at);
        // As signed numbers, what is not ASCII lies below the blank too.
        const __m128i below = _mm_cmplt_epi8(block, blank);
        if (const unsigned found = maskOf(_mm_or_si128(below, _mm_cmpeq_epi8(block, del)))) {
            return at + static_cast<std::size_t>(std::countr_zero(found));
        }
    }
    return at + Words::plainLength(bytes + at, size - at);
}

#else

using Words::plainLength;
using Words::textLength;

#endif

}  // namespace orvane::TextScan
