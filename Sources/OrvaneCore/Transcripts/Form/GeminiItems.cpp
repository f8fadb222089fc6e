#include "OrvaneCore/Transcripts/Form/GeminiItems.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "OrvaneCore/Transcripts/Form/GeminiContent.h"
#include "OrvaneCore/Transcripts/Form/RecordEdit.h"
#include "OrvaneCore/Transcripts/GeminiTranscript.h"
#include "OrvaneCore/Transcripts/TranscriptLine.h"

namespace orvane::TranscriptForm {

namespace {

namespace Schema = GeminiTranscript::Schema;
using TranscriptLine::headContains;

/// Bytes. An update holds the whole conversation: it is longer than what is else worth parsing.
constexpr std::size_t longestUpdate = std::size_t{16} << 20U;

bool isMessage(std::string_view line) {
    return headContains(line, R"("type":"user")") || headContains(line, R"("type":"gemini")") ||
           headContains(line, R"("type":"error")") || headContains(line, R"("type":"info")");
}

}  // namespace

/// A message in `$set.messages`.
struct GeminiItems::Named {
    std::string id;
    std::string time;
    std::string likeness;
    std::string line;
};

void GeminiItems::take(std::string_view line) {
    if (line.starts_with(R"({"$set")") && TranscriptLine::contains(line, R"("messages":)")) return takeUpdate(line);
    if (line.starts_with(R"({"$rewindTo")")) rewoundAt_ = items_.size();
    const std::string id = identifier(line);
    const auto known = places_.find(id);
    if (known != places_.end() && known->second >= rewoundAt_ && !items_[known->second].id.empty()) {
        items_[known->second].line = line;
        unindexed_.push_back(known->second);
        return;
    }
    if (!id.empty()) {
        places_[id] = items_.size();
        unindexed_.push_back(items_.size());
    }
    Item& item = items_.emplace_back();
    item.line = line;
    item.id = id;
}

std::string GeminiItems::identifier(std::string_view line) {
    if (!line.starts_with('{') || !isMessage(line)) return {};
    if (line.starts_with(R"({"id":")")) {
        return std::string(TranscriptLine::scannedWord(line, Schema::identifier).value_or(""));
    }
    const auto record = TranscriptLine::parsed(parser_, line);
    return record ? std::string(record->string(Schema::identifier).value_or("")) : std::string();
}

void GeminiItems::takeUpdate(std::string_view line) {
    const auto record = line.size() <= longestUpdate ? parser_.parse(line) : std::nullopt;
    const TranscriptRecord update = record ? (*record)[Schema::metadataUpdate] : TranscriptRecord();
    std::string written;
    std::vector<Named> messages;
    if (update.isObject()) {
        messages = named(update[Schema::messages]);
        const std::string rest = RecordEdit::object(update, {{.key = Schema::messages, .json = {}}});
        written = RecordEdit::object(*record, {{.key = Schema::metadataUpdate, .json = rest}});
    }
    Item& item = items_.emplace_back();
    item.line = line;
    item.written = std::move(written);
    place(messages);
}

std::vector<GeminiItems::Named> GeminiItems::named(const TranscriptRecord& messages) {
    std::vector<Named> all;
    for (const TranscriptRecord& message : messages.elements()) {
        const auto id = message.string(Schema::identifier);
        std::string likeness = GeminiContent::likeness(message);
        // What stands in a tag was told by the CLI, not said.
        if (!id || id->empty() || likeness.empty() || likeness.starts_with("user\n<")) continue;
        all.push_back({.id = std::string(*id),
                       .time = std::string(message.string("timestamp").value_or("")),
                       .likeness = std::move(likeness),
                       .line = message.json()});
    }
    return all;
}

/// Makes the messages that came since the last update known by their likeness.
void GeminiItems::index() {
    std::ranges::sort(unindexed_);
    for (const std::size_t place : unindexed_) {
        const auto record = TranscriptLine::parsed(parser_, items_[place].line);
        std::string likeness = record ? GeminiContent::likeness(*record) : std::string();
        if (likeness == items_[place].likeness) continue;
        auto& places = likeThis_[likeness];
        places.insert(std::ranges::lower_bound(places, place), place);
        items_[place].likeness = std::move(likeness);
    }
    unindexed_.clear();
}

void GeminiItems::place(const std::vector<Named>& messages) {
    if (messages.empty()) return;
    index();
    ++update_;
    searchFrom_ = 0;
    for (const Named& message : messages)
        namedBy_[message.id] = update_;
    std::vector<std::string> unseen;
    for (std::size_t at = 0; at < messages.size(); ++at) {
        const Named& message = messages[at];
        const auto [known, isNew] = places_.try_emplace(message.id, items_.size() - 1);
        if (isNew) {
            if (!original(message)) unseen.push_back(message.line);
        } else if (!items_[known->second].id.empty() && !isCopy(messages, at, known->second)) {
            auto& before = items_[known->second].unseenBefore;
            std::ranges::move(unseen, std::back_inserter(before));
            unseen.clear();
        }
    }
    std::ranges::move(unseen, std::back_inserter(items_.back().unseenBefore));
}

/// People say the same thing twice: only what was written at one time with its neighbour is a copy.
bool GeminiItems::isCopy(const std::vector<Named>& messages, std::size_t at, std::size_t place) {
    Item& item = items_[place];
    if (item.copyOf) {
        searchFrom_ = std::max(searchFrom_, *item.copyOf + 1);
        return true;
    }
    const std::string& time = messages[at].time;
    const bool isInBurst = !time.empty() && ((at > 0 && messages[at - 1].time == time) ||
                                             (at + 1 < messages.size() && messages[at + 1].time == time));
    if (isInBurst) item.copyOf = original(messages[at]);
    return item.copyOf.has_value();
}

/// The place of the next message that says the same and that this update does not name.
std::optional<std::size_t> GeminiItems::original(const Named& message) {
    const auto found = likeThis_.find(message.likeness);
    if (found == likeThis_.end()) return std::nullopt;
    for (auto at = std::ranges::lower_bound(found->second, searchFrom_); at != found->second.end(); ++at) {
        const Item& item = items_[*at];
        const auto named = namedBy_.find(item.id);
        const bool isNamed = named != namedBy_.end() && named->second == update_;
        if (isNamed || item.copyOf || item.likeness != message.likeness) continue;
        searchFrom_ = *at + 1;
        return *at;
    }
    return std::nullopt;
}

}  // namespace orvane::TranscriptForm
