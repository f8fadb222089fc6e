#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "TerminalEmulator/Buffer/Buffer.h"

namespace orvane {

/// A logical line as a search sees it. Rows have the numbers that scrolling does not change: place in the ring plus
/// `Buffer::linesTop`.
struct SearchLine {
    std::int64_t firstRow = 0;
    int rowCount = 0;
    std::size_t offset = 0;  ///< of its text in the block's
    std::size_t length = 0;  ///< in bytes
};

/// The text of the lines that start within one stretch of rows.
struct SearchBlock {
    std::vector<SearchLine> lines;
    std::string text;

    std::string_view textOf(const SearchLine& line) const {
        return std::string_view(text).substr(line.offset, line.length);
    }
};

/// The text of a buffer in blocks. Those of the history are kept, up to a bound, because it does not change between
/// one key and the next in a search field; those of the screen are read anew each time.
///
/// A line of more rows than a block may be cut where a block ends, and one of more than 2,047 rows is; what stands
/// across such a cut is not found.
class SearchLineCache {
 public:
    static constexpr std::int64_t rowsPerBlock = 1024;
    static constexpr std::size_t maximumBytes = std::size_t{16} << 20;  ///< of text that is kept

    /// Both must outlive the cache.
    SearchLineCache(const Buffer& buffer, const ClusterTable& clusters) : buffer_(&buffer), clusters_(clusters) {}

    void setBuffer(const Buffer& buffer);
    void clear();

    // Blocks by number; the first is that of the oldest row. There is at least one.
    std::int64_t firstBlock() const { return oldestRow() / rowsPerBlock; }
    std::int64_t lastBlock() const;
    /// Good until the next call or until the buffer changes.
    const SearchBlock& block(std::int64_t number);

    std::size_t bytesInUse() const { return bytes_; }

 private:
    struct Kept {
        SearchBlock block;
        std::int64_t oldestRow = 0;  ///< of the buffer when the block was read
        // The first and the last row that were read. Rows of the history have the same generations as long as the
        // history has not been laid out anew, and do not change till then.
        std::int64_t firstRow = 0;
        std::int64_t lastRow = 0;
        std::uint64_t firstGeneration = 0;
        std::uint64_t lastGeneration = 0;
    };

    std::int64_t oldestRow() const { return static_cast<std::int64_t>(buffer_->linesTop()); }
    int ringRow(std::int64_t row) const { return static_cast<int>(row - oldestRow()); }
    bool startsLine(int ringRow) const;
    bool isGood(const Kept& kept, std::int64_t number) const;
    bool hasGeneration(std::int64_t row, std::uint64_t generation) const;
    Kept read(std::int64_t number) const;
    int readLine(int ringRow, SearchBlock& block) const;
    void dropFallen();

    const Buffer* buffer_;
    const ClusterTable& clusters_;
    std::map<std::int64_t, Kept> kept_;
    Kept scratch_;  ///< the block that was read last and is not kept
    std::size_t bytes_ = 0;
};

}  // namespace orvane
