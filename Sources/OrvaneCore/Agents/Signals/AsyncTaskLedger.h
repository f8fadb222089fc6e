#pragma once

#include <cstddef>
#include <functional>
#include <set>
#include <string>
#include <string_view>

namespace orvane {

/// The background tasks of Claude Code that a transcript has launched and not seen end.
class AsyncTaskLedger {
 public:
    /// Reads one line of the transcript. It is searched as text: lines are long and few of them matter.
    void ingest(std::string_view line);
    void reset() { open_.clear(); }

    /// Tool-use ids.
    const std::set<std::string, std::less<>>& open() const { return open_; }
    std::size_t openCount() const { return open_.size(); }
    bool isEmpty() const { return open_.empty(); }

 private:
    std::set<std::string, std::less<>> open_;
};

}  // namespace orvane
