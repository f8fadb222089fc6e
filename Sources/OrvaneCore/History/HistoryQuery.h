#pragma once

#include <optional>
#include <string>

#include "OrvaneCore/History/SessionRecord.h"

namespace orvane {

/// What somebody looks for among past conversations.
struct HistoryQuery {
    /// Words, all of which have to be somewhere in title, project or prompts.
    std::string text;
    std::optional<TranscriptProvider> provider;
    /// Exactly this folder.
    std::optional<std::string> projectPath;
    /// Of the last activity, both ends included.
    std::optional<Date> from;
    std::optional<Date> to;
    /// A POSIX or BCP 47 name; decides how letters fold ("tr").
    std::string locale = {};

    bool passesFilters(const SessionRecord& record) const;
};

}  // namespace orvane
