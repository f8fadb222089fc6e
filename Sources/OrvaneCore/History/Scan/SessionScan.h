#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

#include "OrvaneCore/Support/Date.h"

namespace orvane {

/// What was learned of one conversation so far.
struct SessionScan {
    enum class Part { head, tail };

    std::optional<std::string> sessionID;
    std::optional<std::string> projectPath;
    std::optional<std::string> summaryTitle;
    std::optional<Date> firstPromptAt;
    std::optional<Date> metaStartedAt;
    std::optional<Date> metaUpdatedAt;
    std::int64_t messages = 0;
    std::int64_t tokens = 0;
    std::vector<std::string> headPrompts;
    std::vector<std::string> tailPrompts;
    bool sawPrompt = false;
    /// A helper of another conversation, which nobody would look for.
    bool isSubagent = false;

    /// A prompt that was seen before is told once.
    void addPrompt(std::string text, std::optional<Date> at, Part part);
    /// A figure that is missing, or that no response can have used, does not count.
    void addTokens(std::optional<std::int64_t> count);
    /// Whether an id, or a line that has none, comes for the first time.
    bool isNew(std::string_view idOrLine) { return seenLines_.insert(std::hash<std::string_view>()(idOrLine)).second; }

 private:
    std::unordered_set<std::string> seenPrompts_;
    std::unordered_set<std::size_t> seenLines_;  ///< hashes: two of some hundred lines never share one in practice
};

}  // namespace orvane
