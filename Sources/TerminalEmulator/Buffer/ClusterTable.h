#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "TerminalEmulator/Buffer/CharData.h"

namespace orvane {

/// The grapheme clusters of several scalars that one terminal has shown: text to handle and back. A handle never means
/// another cluster as long as the terminal lives.
class ClusterTable {
 public:
    static constexpr std::int32_t firstHandle = CharData::clusterBase + 1;
    static constexpr std::size_t maximumScalars = 32;        ///< of one cluster
    static constexpr std::size_t maximumClusters = 131'072;  ///< known at a time; some 20 MB at the very worst
    static constexpr std::int32_t lastHandle = firstHandle + 0xEFFFF;  ///< what 21 bits beside Unicode leave

    /// The code of the cluster that a cell's code and one more scalar make: a handle; the code itself when the cluster
    /// is full; the base scalar when handles have run out.
    std::int32_t joined(std::int32_t code, char32_t scalar);

    /// The code of a cluster given as UTF-8: its one scalar, a handle, or its base scalar when handles have run out.
    /// Scalars past the limit are left off. 0 for text that does not start with a scalar.
    std::int32_t charToIndex(std::string_view text);

    /// The text of a handle; empty for what is none. Looks into the table: good until the next cluster is added.
    std::string_view indexToChar(std::int32_t handle) const;

    /// Appends what a cell with this code shows. What is neither a scalar nor a known handle reads as a space.
    void appendText(std::int32_t code, std::string& out) const;
    std::string text(std::int32_t code) const;

    /// The first scalar of what a cell shows; a space for an unknown handle.
    char32_t baseScalar(std::int32_t code) const;
    /// The last scalar, which decides how the next one joins.
    char32_t lastScalar(std::int32_t code) const;

    std::int32_t lastCharIndex() const { return nextHandle_; }  ///< the handle that the next cluster gets

    /// Forgets all clusters: cells that still hold one read as a space.
    void reset();

    std::size_t bytesInUse() const;

 private:
    /// What a code and one more scalar were joined to: emoji come again and again.
    struct Joined {
        std::int32_t code = 0;
        char32_t scalar = 0;
        std::int32_t result = 0;
    };

    std::int32_t find(std::string_view text) const;
    std::int32_t add(std::string_view text);
    std::string_view textAt(std::size_t index) const;
    void rehash(std::size_t slots);

    std::string texts_;                 ///< all texts, one after the other
    std::vector<std::uint32_t> ends_;   ///< where the text of each handle ends, from `firstKnown_` on
    std::vector<std::uint32_t> slots_;  ///< hash table with linear probing; index into `ends_` plus 1, 0 is free
    std::array<Joined, 256> joined_{};
    std::int32_t firstKnown_ = firstHandle;
    std::int32_t nextHandle_ = firstHandle;
};

}  // namespace orvane
