#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace orvane {

/// A 16-bit handle to a text in a table of the process: what a cell keeps of its hyperlink. 0 is none.
///
/// Every `lookup` takes one hold on the handle and every `release` gives one back; a handle without holds is free to
/// mean another text. Terminals go through `PayloadHolder`, which keeps count for them. Main thread only.
struct TinyAtom {
    static constexpr std::size_t maximumHandles = 65535;
    static constexpr std::size_t maximumTextLength = 16 * 1024;             ///< in bytes, of one text
    static constexpr std::size_t maximumTextBytes = std::size_t{32} << 20;  ///< of all texts together

    std::uint16_t code = 0;

    /// The handle of the text, a new one when it has none. 0 for an empty or too long text and when the table is full.
    static TinyAtom lookup(std::string_view text);

    /// Gives one hold back. A code that is not in use is ignored.
    static void release(std::uint16_t code);

    /// The text, which stays where it is as long as the handle is held; null when the handle is 0 or not in use.
    const std::string* target() const;

    bool operator==(const TinyAtom&) const = default;
};

}  // namespace orvane
