#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <utility>
#include <vector>

#include "OrvaneCore/Transcripts/Feed/UserText.h"
#include "OrvaneCore/Transcripts/TranscriptFeed.h"

namespace orvane::TranscriptFeed {

/// Where in a file an entry comes from.
struct Origin {
    /// The record's own id; empty when it has none.
    std::string_view recordId;
    /// Index of the block in the record.
    std::size_t block = 0;
    std::optional<Date> at;
};

/// The entries that a feed has read so far: the newest of them, ids that are never given twice, and the calls that wait
/// for their results.
class FeedState {
 public:
    explicit FeedState(int limit);

    /// Entries that the reader wants; 0 for none.
    std::size_t limit() const { return limit_; }

    void append(Entry entry);
    /// An entry of the role with the text cleaned; nothing when that is empty.
    void appendMessage(Role role, std::string_view text, const Origin& origin);
    void appendUser(std::string_view text, const Origin& origin, CommandForm form = CommandForm::tag);
    void appendCall(Entry call, std::string_view callId);
    /// The entries take the place of those that an earlier record with this id gave, or the end.
    void put(std::string_view recordId, std::vector<Entry> entries);

    /// An entry with a new id and the origin's date.
    Entry entry(Role role, const Origin& origin);
    std::vector<Entry> userEntries(std::string_view text, const Origin& origin, CommandForm form);

    /// The call turns into an error; its text becomes the detail unless that is blank. An unknown call is ignored.
    void fail(std::string_view callId, std::string_view detail);

    std::vector<Entry> last() const;

 private:
    std::string id(const Origin& origin, std::string_view suffix = {});
    void makeUnique(Entry& entry);
    std::pair<std::size_t, std::size_t> runOf(std::string_view recordId) const;
    void cutOldest();

    std::size_t limit_;
    std::size_t keepCap_;
    std::vector<Entry> entries_;
    /// Ids of `entries_`.
    std::unordered_set<std::string> ids_;
    /// By call id: the index in `entries_` plus `removed_` at the time.
    std::unordered_map<std::string, std::uint64_t> toolIndex_;
    std::uint64_t sequence_ = 0;
    std::uint64_t removed_ = 0;
};

}  // namespace orvane::TranscriptFeed
