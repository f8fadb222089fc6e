#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace orvane {

/// Decodes UTF-8 that comes in pieces. Each maximal subpart of a malformed sequence gives one U+FFFD, as the Unicode
/// Standard recommends (section 3.9, "U+FFFD Substitution of Maximal Subparts"); a cut between pieces makes no
/// difference.
class Utf8Decoder {
 public:
    static constexpr char32_t replacementCharacter = 0xFFFD;

    /// Calls `sink(char32_t)` for each scalar that is whole. The beginning of a sequence at the end of the bytes stays
    /// for the next call. ASCII is passed on as it is, though not as fast as by one who copies it.
    template <typename Sink>
    void decode(std::string_view bytes, Sink&& sink) {
        const auto* at = reinterpret_cast<const std::uint8_t*>(bytes.data());
        const auto* const end = at + bytes.size();
        at = continueSequence(at, end, sink);
        while (at != end) {
            if (*at < 0x80) {
                sink(static_cast<char32_t>(*at++));
            } else if (const std::size_t size = wholeSequence(at, end)) {
                sink(scalarOf(at, size));
                at += size;
            } else {
                begin(*at++, sink);
                at = continueSequence(at, end, sink);
            }
        }
    }

    /// Whether a sequence has begun and is not whole.
    [[nodiscard]] bool isPending() const { return missing_ > 0; }

    /// Calls `sink` with U+FFFD when a sequence is pending, which is then over.
    template <typename Sink>
    void finish(Sink&& sink) {
        if (!isPending()) return;
        reset();
        sink(replacementCharacter);
    }

    void reset() { missing_ = 0; }

 private:
    static bool isContinuation(std::uint8_t byte) { return (byte & 0xC0) == 0x80; }

    /// The size of the sequence when it is of two or three bytes, whole, and of those whose second byte is free; 0
    /// where that takes a closer look.
    static std::size_t wholeSequence(const std::uint8_t* at, const std::uint8_t* end) {
        const std::uint8_t lead = *at;
        if (lead >= 0xE1 && lead <= 0xEF && lead != 0xED) {
            return end - at >= 3 && isContinuation(at[1]) && isContinuation(at[2]) ? 3 : 0;
        }
        return lead >= 0xC2 && lead <= 0xDF && end - at >= 2 && isContinuation(at[1]) ? 2 : 0;
    }

    static char32_t scalarOf(const std::uint8_t* at, std::size_t size) {
        if (size == 2) return static_cast<char32_t>((at[0] & 0x1F) << 6 | (at[1] & 0x3F));
        return static_cast<char32_t>((at[0] & 0x0F) << 12 | (at[1] & 0x3F) << 6 | (at[2] & 0x3F));
    }

    /// Table 3-7 of the Unicode Standard: how many bytes follow a lead, and what the first of them may be.
    template <typename Sink>
    void begin(std::uint8_t lead, Sink& sink) {
        lowest_ = 0x80;
        highest_ = 0xBF;
        if (lead >= 0xC2 && lead <= 0xDF) {
            missing_ = 1;
            scalar_ = lead & 0x1F;
        } else if (lead >= 0xE0 && lead <= 0xEF) {
            missing_ = 2;
            scalar_ = lead & 0x0F;
            if (lead == 0xE0) lowest_ = 0xA0;   // shorter forms exist
            if (lead == 0xED) highest_ = 0x9F;  // surrogates
        } else if (lead >= 0xF0 && lead <= 0xF4) {
            missing_ = 3;
            scalar_ = lead & 0x07;
            if (lead == 0xF0) lowest_ = 0x90;   // shorter forms exist
            if (lead == 0xF4) highest_ = 0x8F;  // beyond U+10FFFF
        } else {
            sink(replacementCharacter);
        }
    }

    template <typename Sink>
    const std::uint8_t* continueSequence(const std::uint8_t* at, const std::uint8_t* end, Sink& sink) {
        while (missing_ > 0 && at != end) {
            if (*at < lowest_ || *at > highest_) {
                finish(sink);
                break;
            }
            scalar_ = scalar_ << 6 | (*at++ & 0x3F);
            lowest_ = 0x80;
            highest_ = 0xBF;
            if (--missing_ == 0) sink(scalar_);
        }
        return at;
    }

    char32_t scalar_ = 0;
    std::uint8_t missing_ = 0;
    std::uint8_t lowest_ = 0x80;
    std::uint8_t highest_ = 0xBF;
};

}  // namespace orvane
