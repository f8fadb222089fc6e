#pragma once

#include <cstdint>
#include <stop_token>
#include <string>
#include <string_view>
#include <vector>

#include "OrvaneCore/History/HistoryQuery.h"

namespace orvane {

/// Searches the same records again and again, as one does with every key that is typed: it folds their texts once and
/// keeps them side by side. Any thread; the records have to stay as they are.
class HistorySearch {
 public:
    HistorySearch(const std::vector<SessionRecord>& records, std::string_view locale);

    /// Places of the records that are found, the best first and of equally good ones the newest; without words the
    /// newest first. Nothing when it is told to stop.
    std::vector<std::size_t> find(const HistoryQuery& query, const std::stop_token& stop = {}) const;

    /// The memory that it takes, in bytes.
    std::size_t byteSize() const;

 private:
    /// Where the folded texts of a record lie in `texts_`; each ends where the next begins.
    struct Entry {
        std::uint32_t title;
        std::uint32_t project;
        std::uint32_t preview;
        std::uint32_t end;
    };
    struct Words;

    /// None when one of the words is nowhere.
    int score(const Entry& entry, const Words& words) const;
    std::string_view between(std::uint32_t begin, std::uint32_t end) const {
        return std::string_view(texts_).substr(begin, end - begin);
    }
    void append(const SessionRecord& record, std::string_view locale);

    const std::vector<SessionRecord>* records_;
    std::string texts_;
    std::vector<Entry> entries_;
    std::vector<std::uint32_t> byRecency_;  ///< places of the records, the newest first
};

}  // namespace orvane
