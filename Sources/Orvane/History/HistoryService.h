#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <set>
#include <stop_token>
#include <string>
#include <vector>

#include "Orvane/History/HistoryCorpus.h"
#include "Orvane/Support/Signal.h"
#include "OrvaneCore/History/HistoryIndex.h"
#include "Platform/BackgroundPool.h"
#include "Platform/MainLoop.h"
#include "Platform/WholeFileWriter.h"

namespace orvane {

class HistoryWalk;

/// All past conversations on the machine, and the list of them that somebody looks at. Main thread; what blocks or
/// takes long goes on behind.
class HistoryService : public std::enable_shared_from_this<HistoryService> {
 public:
    using Row = HistoryCorpus::Row;
    using ProjectOption = HistoryCorpus::ProjectOption;
    using Found = HistoryCorpus::Found;
    using ComputeInput = HistoryCorpus::ComputeInput;

    /// What it stands on; all of it outlives the service.
    struct Services {
        MainLoop& loop;
        BackgroundPool& pool;
        SerialQueue& fileQueue;
        /// The agents' files are below it.
        std::string home;
        /// Where the index is kept between runs.
        std::string indexPath;
        std::string timeZone = "UTC";
        Language language = Language::en;
        /// Hears of an index that could not be written.
        WholeFileWriter::ErrorCallback onError = {};
    };

    explicit HistoryService(Services services);
    HistoryService(const HistoryService&) = delete;
    HistoryService& operator=(const HistoryService&) = delete;
    ~HistoryService();

    // What it publishes. `changed` tells whenever one of them may be another.
    const std::vector<SessionRecord>& records() const { return corpus_->records(); }
    const std::vector<ProjectOption>& projectOptions() const { return corpus_->projectOptions(); }
    const std::vector<Row>& rows() const { return found_.rows; }
    std::size_t totalMatches() const { return found_.totalMatches; }
    bool indexing() const { return walk_ != nullptr; }
    /// `rows` still answers an older wish.
    bool searching() const { return isSearching_; }
    Signal<> changed;

    // What the list shows. A newer wish cancels what is being computed for an older one.
    const std::string& searchText() const { return input_.text; }
    const std::set<TranscriptProvider>& providerFilter() const { return input_.providers; }
    const std::optional<std::string>& projectFilter() const { return input_.project; }
    SessionHistory::Sort sort() const { return input_.sort; }
    std::size_t visibleLimit() const { return input_.limit; }
    void setSearchText(std::string text);
    void setProviderFilter(std::set<TranscriptProvider> providers);
    void setProjectFilter(std::optional<std::string> project);
    void setSort(SessionHistory::Sort sort);
    void loadMore();

    /// Looks at the disk; `done` runs once everything that was there by now is in `records`. While nothing has changed
    /// no transcript is read.
    void refresh(std::function<void()> done = {});
    /// The user has chosen another language.
    void setLanguage(Language language);
    /// Of the files that the last walk looked at, how many it read.
    std::size_t filesRead() const { return filesRead_; }

    /// Answers a question beside the list. The input's time and time zone are those of now and here.
    void find(ComputeInput input, std::function<void(const Found&)> done);
    std::string timeZone() const { return services_.timeZone; }
    const std::string& home() const { return services_.home; }

 private:
    /// What a walk brings back to the main thread.
    struct News {
        HistoryIndex index;
        std::shared_ptr<const HistoryCorpus> corpus;  ///< none when nothing has changed
        std::string indexText;                        ///< empty when it is on the disk already
        std::size_t filesRead = 0;
    };

    void walk();
    void take(News news);
    void beginList();
    void recompute();
    ComputeInput stamped(ComputeInput input) const;

    Services services_;
    WholeFileWriter writer_;
    std::shared_ptr<const HistoryCorpus> corpus_;
    HistoryIndex index_;
    bool loaded_ = false;
    std::shared_ptr<HistoryWalk> walk_;
    std::vector<std::function<void()>> walking_;  ///< for the walk that goes on
    std::vector<std::function<void()>> waiting_;  ///< for the one after it
    std::size_t filesRead_ = 0;
    ComputeInput input_;
    Found found_;
    bool isSearching_ = false;
    std::stop_source recomputeTask_;
};

}  // namespace orvane
