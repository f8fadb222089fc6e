#include "OrvaneCore/Transcripts/Feed/FeedState.h"

#include <algorithm>
#include <iterator>

#include "OrvaneCore/Transcripts/Scan/TranscriptText.h"

namespace orvane::TranscriptFeed {

namespace {

/// Of a window of this many entries at most, twice as many stay when four times as many were read.
constexpr int maximumKeepCap = 5000;

bool isOfRecord(std::string_view id, std::string_view recordId) {
    return id.starts_with(recordId) && (id.size() == recordId.size() || id[recordId.size()] == '#');
}

}  // namespace

FeedState::FeedState(int limit)
    : limit_(static_cast<std::size_t>(std::max(limit, 0))),
      keepCap_(static_cast<std::size_t>(std::clamp(limit, 0, maximumKeepCap))) {}

std::string FeedState::id(const Origin& origin, std::string_view suffix) {
    std::string number = std::to_string(sequence_++);
    if (!suffix.empty()) return std::string(origin.recordId).append(suffix).append(number);
    if (origin.recordId.empty()) return number;
    std::string minted(origin.recordId);
    return origin.block == 0 ? minted : minted + "#" + std::to_string(origin.block);
}

Entry FeedState::entry(Role role, const Origin& origin) {
    Entry made;
    made.id = id(origin);
    made.role = role;
    made.at = origin.at;
    return made;
}

std::vector<Entry> FeedState::userEntries(std::string_view text, const Origin& origin, CommandForm form) {
    std::vector<Entry> made;
    for (UserText::Message& message : UserText::messages(text, form)) {
        Entry& entry = made.emplace_back();
        entry.id = id(origin, message.isHandedOver ? ":handoff" : "");
        entry.role = message.role;
        entry.text = std::move(message.text);
        entry.attachments = std::move(message.attachments);
        entry.at = origin.at;
    }
    return made;
}

void FeedState::append(Entry entry) {
    makeUnique(entry);
    entries_.push_back(std::move(entry));
    if (entries_.size() > keepCap_ * 4 + 64) cutOldest();
}

void FeedState::appendMessage(Role role, std::string_view text, const Origin& origin) {
    std::string cleaned = TranscriptText::message(text);
    if (cleaned.empty()) return;
    Entry made = entry(role, origin);
    made.text = std::move(cleaned);
    append(std::move(made));
}

void FeedState::appendUser(std::string_view text, const Origin& origin, CommandForm form) {
    for (Entry& entry : userEntries(text, origin, form))
        append(std::move(entry));
}

void FeedState::appendCall(Entry call, std::string_view callId) {
    append(std::move(call));
    if (!callId.empty()) toolIndex_[std::string(callId)] = removed_ + entries_.size() - 1;
}

void FeedState::put(std::string_view recordId, std::vector<Entry> entries) {
    const auto [begin, end] = runOf(recordId);
    const auto first = entries_.begin() + static_cast<std::ptrdiff_t>(begin);
    const auto last = entries_.begin() + static_cast<std::ptrdiff_t>(end);
    for (auto old = first; old != last; ++old)
        ids_.erase(old->id);
    for (Entry& entry : entries)
        makeUnique(entry);
    const auto place = entries_.erase(first, last);
    entries_.insert(place, std::move_iterator(entries.begin()), std::move_iterator(entries.end()));
    if (entries_.size() > keepCap_ * 4 + 64) cutOldest();
}

/// Indexes of the first entry of the record that is held and of the one behind its last; the end for none.
std::pair<std::size_t, std::size_t> FeedState::runOf(std::string_view recordId) const {
    const std::string first(recordId);
    if (first.empty() || (!ids_.contains(first) && !ids_.contains(first + "#1")))
        return {entries_.size(), entries_.size()};
    const auto isMine = [&](const Entry& entry) { return isOfRecord(entry.id, recordId); };
    const auto end = std::find_if(entries_.rbegin(), entries_.rend(), isMine);
    const auto begin = std::find_if_not(end, entries_.rend(), isMine);
    return {static_cast<std::size_t>(entries_.rend() - begin), static_cast<std::size_t>(entries_.rend() - end)};
}

void FeedState::makeUnique(Entry& entry) {
    while (!ids_.insert(entry.id).second)
        entry.id += "~" + std::to_string(sequence_);
}

void FeedState::cutOldest() {
    const std::size_t count = entries_.size() - (keepCap_ * 2 + 32);
    const auto end = entries_.begin() + static_cast<std::ptrdiff_t>(count);
    std::for_each(entries_.begin(), end, [&](const Entry& entry) { ids_.erase(entry.id); });
    entries_.erase(entries_.begin(), end);
    removed_ += count;
    std::erase_if(toolIndex_, [&](const auto& call) { return call.second < removed_; });
}

void FeedState::fail(std::string_view callId, std::string_view detail) {
    const auto found = toolIndex_.find(std::string(callId));
    if (found == toolIndex_.end()) return;
    Entry& call = entries_[found->second - removed_];
    call.role = Role::error;
    std::string text = TranscriptText::detail(detail);
    if (!text.empty()) call.text = std::move(text);
}

std::vector<Entry> FeedState::last() const {
    const std::size_t count = std::min(limit_, entries_.size());
    return {entries_.end() - static_cast<std::ptrdiff_t>(count), entries_.end()};
}

}  // namespace orvane::TranscriptFeed
