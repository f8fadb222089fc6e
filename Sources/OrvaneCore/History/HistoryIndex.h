#pragma once

#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "OrvaneCore/History/SessionRecord.h"

namespace orvane {

/// What is known of each transcript on disk, so that one that has not changed need not be read again.
class HistoryIndex {
 public:
    /// Of the form on disk. An index of another version counts as empty: it is made again from the transcripts.
    static constexpr int currentVersion = 1;

    struct Entry {
        double mtime = 0;  ///< seconds since 1970
        std::int64_t byteSize = 0;
        /// None for a transcript in which nobody asked anything.
        std::optional<SessionRecord> record;

        bool operator==(const Entry&) const = default;
    };

    static bool needsReindex(const std::optional<Entry>& cached, Date modifiedAt, std::int64_t byteSize);
    bool needsReindex(const std::string& fileAt, Date modifiedAt, std::int64_t byteSize) const;
    std::optional<Entry> entry(const std::string& forFileAt) const;

    void store(SessionRecord record, Date modifiedAt, std::int64_t byteSize);
    /// The file is no conversation.
    void storeNone(const std::string& fileAt, Date modifiedAt, std::int64_t byteSize);
    /// Drops what is known of all other files; whether there was any.
    bool prune(const std::set<std::string>& keeping);

    /// In the order of their files.
    std::vector<SessionRecord> records() const;

    JsonValue encode() const;
    /// The text of the file. What cannot be decoded counts as empty.
    static HistoryIndex decode(std::string_view text);

    bool operator==(const HistoryIndex&) const = default;

 private:
    std::map<std::string, Entry> entries_;
};

}  // namespace orvane
