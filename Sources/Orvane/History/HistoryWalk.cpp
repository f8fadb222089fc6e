#include "Orvane/History/HistoryWalk.h"

#include <algorithm>
#include <utility>

#include "Orvane/History/TranscriptEnds.h"

namespace orvane {

namespace {

constexpr std::size_t filesPerTask = 32;

}  // namespace

void HistoryWalk::start(std::function<HistoryIndex()> index) {
    pool_.submit([self = shared_from_this(), index = std::move(index)] {
        try {
            self->index_ = index();
            self->findChanged();
            self->isListed_ = true;
        } catch (...) {
            // Whoever waits for the walk gets what was known.
            BackgroundPool::reportEscapedException();
            self->changed_.clear();
        }
        const std::size_t tasks =
            std::min((self->changed_.size() + filesPerTask - 1) / filesPerTask, BackgroundPool::defaultThreadCount());
        if (tasks == 0) self->finish();
        for (std::size_t task = 0; task < tasks; ++task)
            self->pool_.submit([self] { self->readSome(); });
    });
}

void HistoryWalk::findChanged() {
    for (HistoryFiles::File& file : HistoryFiles::list(home_)) {
        paths_.insert(file.path);
        if (index_.needsReindex(file.path, file.modifiedAt, file.byteSize)) changed_.push_back(std::move(file));
    }
    readings_.resize(changed_.size());
}

void HistoryWalk::readSome() {
    TranscriptEnds ends;
    for (std::size_t count = 0; count < filesPerTask && !isStopped_; ++count) {
        const std::size_t place = next_++;
        if (place >= changed_.size()) return;
        try {
            readings_[place] = HistoryFiles::read(changed_[place], ends);
        } catch (...) {
            BackgroundPool::reportEscapedException();
        }
        if (++done_ == changed_.size()) return finish();
    }
    if (!isStopped_) pool_.submit([self = shared_from_this()] { self->readSome(); });
}

void HistoryWalk::finish() {
    if (isStopped_) return;
    Result result{.index = std::move(index_), .hasChanged = false, .filesRead = changed_.size()};
    for (std::size_t place = 0; place < changed_.size(); ++place) {
        auto& reading = readings_[place];
        // It goes on with what was known, and is tried again by the next walk.
        if (!reading) continue;
        const HistoryFiles::File& file = reading->file;
        result.hasChanged = true;
        if (reading->record) {
            result.index.store(*std::move(reading->record), file.modifiedAt, file.byteSize);
        } else {
            result.index.storeNone(file.path, file.modifiedAt, file.byteSize);
        }
    }
    if (isListed_ && result.index.prune(paths_)) result.hasChanged = true;
    finish_(std::move(result));
}

}  // namespace orvane
