#pragma once

#include <memory>
#include <set>
#include <stop_token>
#include <string>
#include <vector>

#include "OrvaneCore/History/HistorySearch.h"
#include "OrvaneCore/History/SessionHistory.h"
#include "OrvaneCore/Support/Language.h"

namespace orvane {

/// Conversations as one walk found them, ready to be searched. Never changes, so that any thread may look.
class HistoryCorpus {
 public:
    struct ProjectOption {
        std::string path;
        std::string name;
        std::size_t count = 0;

        bool operator==(const ProjectOption&) const = default;
    };
    /// A question, with all that the answer depends on.
    struct ComputeInput {
        std::string text;
        /// None for all.
        std::set<TranscriptProvider> providers;
        std::optional<std::string> project;
        std::optional<Date> from;
        std::optional<Date> to;
        /// For found words recency means the best first.
        SessionHistory::Sort sort;
        std::size_t limit = 100;
        Language language = Language::en;
        std::string timeZone = "UTC";
        Date now;
    };
    struct Row {
        SessionRecord record;
        std::string whenLabel;

        bool operator==(const Row&) const = default;
    };
    struct Found {
        std::vector<Row> rows;
        /// Also of those beyond the limit.
        std::size_t totalMatches = 0;
    };

    HistoryCorpus(std::vector<SessionRecord> records, Language language);
    HistoryCorpus(const HistoryCorpus&) = delete;
    HistoryCorpus& operator=(const HistoryCorpus&) = delete;

    const std::vector<SessionRecord>& records() const { return records_; }
    /// By name.
    const std::vector<ProjectOption>& projectOptions() const { return projectOptions_; }
    /// Nothing when it is told to stop.
    Found compute(const ComputeInput& input, const std::stop_token& stop = {}) const;

 private:
    std::vector<SessionRecord> firstRecords(const ComputeInput& input, const std::vector<std::size_t>& found) const;

    std::vector<SessionRecord> records_;
    HistorySearch search_;
    std::vector<ProjectOption> projectOptions_;
};

}  // namespace orvane
