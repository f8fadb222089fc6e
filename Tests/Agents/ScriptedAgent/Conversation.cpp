#include "ScriptedAgent/Conversation.h"

#include <algorithm>
#include <utility>

#include "ScriptedAgent/Text.h"

namespace orvane::scripted {

void Conversation::add(std::string row) {
    settle();
    rows_.push_back(std::move(row));
}

void Conversation::stream(std::string_view text, Milliseconds period, TimePoint now) {
    settle();
    streamMore(text, period, now);
}

void Conversation::streamMore(std::string_view text, Milliseconds period, TimePoint now) {
    std::vector<std::string> words = split(text, ' ');
    std::ranges::reverse(words);
    coming_.insert(coming_.begin(), words.begin(), words.end());
    period_ = period;
    next_ = now;
    advance(now);
}

void Conversation::advance(TimePoint now) {
    while (!coming_.empty() && next_ <= now) {
        if (!arrived_.empty()) arrived_ += ' ';
        arrived_ += coming_.back();
        coming_.pop_back();
        next_ += period_;
    }
}

void Conversation::settle() {
    coming_.clear();
    if (!arrived_.empty()) rows_.push_back(std::exchange(arrived_, {}));
}

void Conversation::clear() {
    coming_.clear();
    arrived_.clear();
    rows_.clear();
}

void Conversation::beginTurn() {
    turnBegin_ = rows_.size() + (arrived_.empty() ? 0 : 1);
}

void Conversation::takeBack() {
    settle();
    rows_.resize(std::min(turnBegin_, rows_.size()));
}

std::optional<TimePoint> Conversation::nextWord() const {
    if (coming_.empty()) return {};
    return next_;
}

std::vector<std::string> Conversation::settledRows(int cells) const {
    std::vector<std::string> result;
    for (const std::string& row : rows_) {
        for (std::string& line : wrapped(row, cells))
            result.push_back(std::move(line));
    }
    return result;
}

std::vector<std::string> Conversation::streamingRows(int cells, Streams streams) const {
    if (arrived_.empty()) return {};
    std::vector<std::string> rows = wrapped(arrived_, cells);
    if (streams == Streams::words) return rows;
    // Only whole rows are shown; of the first at least its bullet.
    rows.pop_back();
    if (rows.empty()) rows.push_back(arrived_.substr(0, arrived_.find(' ')));
    return rows;
}

}  // namespace orvane::scripted
