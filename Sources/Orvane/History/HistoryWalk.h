#pragma once

#include <atomic>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "Orvane/History/HistoryFiles.h"
#include "OrvaneCore/History/HistoryIndex.h"
#include "Platform/BackgroundPool.h"

namespace orvane {

/// One walk over all transcripts on the threads of a pool. What has not changed since the index was made is not read.
/// The reading is cut in small tasks, so that others that wait for a thread get one.
class HistoryWalk : public std::enable_shared_from_this<HistoryWalk> {
 public:
    struct Result {
        HistoryIndex index;
        bool hasChanged = false;
        std::size_t filesRead = 0;
    };
    /// Runs on a thread of the pool; not after `stop`.
    using Finish = std::function<void(Result)>;

    HistoryWalk(BackgroundPool& pool, std::string home, Finish finish)
        : pool_(pool), home_(std::move(home)), finish_(std::move(finish)) {}

    /// `index` gives what is known so far, on a thread of the pool. Once.
    void start(std::function<HistoryIndex()> index);
    /// As soon as the files that are being read are done. From any thread.
    void stop() { isStopped_ = true; }

 private:
    void findChanged();
    void readSome();
    void finish();

    BackgroundPool& pool_;
    std::string home_;
    Finish finish_;
    HistoryIndex index_;
    std::set<std::string> paths_;
    bool isListed_ = false;  ///< `paths_` are all that there are
    std::vector<HistoryFiles::File> changed_;
    /// Of `changed_`, each written by the one thread that takes its place.
    std::vector<std::optional<HistoryFiles::Reading>> readings_;
    std::atomic<std::size_t> next_ = 0;
    std::atomic<std::size_t> done_ = 0;
    std::atomic<bool> isStopped_ = false;
};

}  // namespace orvane
