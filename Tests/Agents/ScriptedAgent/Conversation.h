#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "ScriptedAgent/Scenario.h"

namespace orvane::scripted {

using TimePoint = std::chrono::steady_clock::time_point;

/// What was said so far, and the row that is being said: its words arrive one by one.
class Conversation {
 public:
    void add(std::string row);
    void stream(std::string_view text, Milliseconds period, TimePoint now);
    /// More words for the row that streams; it begins one when none does.
    void streamMore(std::string_view text, Milliseconds period, TimePoint now);
    void advance(TimePoint now);
    /// No more words come; what has arrived stays.
    void settle();
    void clear();
    void beginTurn();
    /// All that came since the turn began; on the main screen what was printed stays.
    void takeBack();

    std::optional<TimePoint> nextWord() const;
    std::vector<std::string> settledRows(int cells) const;
    std::vector<std::string> streamingRows(int cells, Streams streams) const;

 private:
    std::vector<std::string> rows_;
    std::size_t turnBegin_ = 0;
    std::string arrived_;
    std::vector<std::string> coming_;  ///< the next one last
    TimePoint next_;
    Milliseconds period_{};
};

}  // namespace orvane::scripted
