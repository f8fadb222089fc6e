#include "Orvane/History/HistoryService.h"

#include <utility>

#include "Orvane/History/HistoryWalk.h"
#include "Orvane/Support/WallClock.h"
#include "Platform/Files.h"

namespace orvane {

namespace {

constexpr std::size_t page = 100;
/// Of an index; a larger one would be for millions of conversations.
constexpr std::size_t largestIndex = std::size_t{1} << 30;

HistoryIndex readIndex(const std::string& path) {
    const auto text = readWholeFile(path, largestIndex);
    return text ? HistoryIndex::decode(*text) : HistoryIndex();
}

}  // namespace

HistoryService::HistoryService(Services services)
    : services_(std::move(services)),
      writer_(services_.loop, services_.fileQueue, services_.indexPath, std::move(services_.onError)),
      corpus_(std::make_shared<HistoryCorpus>(std::vector<SessionRecord>(), services_.language)) {
    input_.limit = page;
}

HistoryService::~HistoryService() {
    if (walk_) walk_->stop();
    recomputeTask_.request_stop();
}

void HistoryService::setSearchText(std::string text) {
    if (std::exchange(input_.text, std::move(text)) != input_.text) beginList();
}

void HistoryService::setProviderFilter(std::set<TranscriptProvider> providers) {
    if (std::exchange(input_.providers, std::move(providers)) != input_.providers) beginList();
}

void HistoryService::setProjectFilter(std::optional<std::string> project) {
    if (std::exchange(input_.project, std::move(project)) != input_.project) beginList();
}

void HistoryService::setSort(SessionHistory::Sort sort) {
    if (std::exchange(input_.sort, sort) != sort) beginList();
}

/// Of another list nobody has asked for more than its beginning.
void HistoryService::beginList() {
    input_.limit = page;
    recompute();
}

void HistoryService::loadMore() {
    if (found_.rows.size() >= found_.totalMatches) return;
    input_.limit += page;
    recompute();
}

void HistoryService::refresh(std::function<void()> done) {
    waiting_.push_back(std::move(done));
    if (!walk_) walk();
}

void HistoryService::setLanguage(Language language) {
    services_.language = language;
    corpus_ = std::make_shared<HistoryCorpus>(corpus_->records(), language);
    recompute();
}

void HistoryService::walk() {
    walking_ = std::exchange(waiting_, {});
    const bool isFirst = !std::exchange(loaded_, true);
    // Into the walk and back, so that the threads of the pool share nothing with this one.
    const auto known = std::make_shared<HistoryIndex>(std::move(index_));
    const auto finish = [weak = weak_from_this(), &loop = services_.loop, language = services_.language,
                         isFirst](HistoryWalk::Result result) {
        News news{.index = std::move(result.index), .corpus = {}, .indexText = {}, .filesRead = result.filesRead};
        if (result.hasChanged || isFirst) news.corpus = std::make_shared<HistoryCorpus>(news.index.records(), language);
        if (result.hasChanged) news.indexText = Json::write(news.index.encode()) + "\n";
        loop.post([weak, news = std::move(news)]() mutable {
            if (const auto self = weak.lock()) self->take(std::move(news));
        });
    };
    walk_ = std::make_shared<HistoryWalk>(services_.pool, services_.home, finish);
    walk_->start(
        [isFirst, known, path = services_.indexPath] { return isFirst ? readIndex(path) : std::move(*known); });
    changed.emit();
}

void HistoryService::take(News news) {
    const auto self = shared_from_this();  // whoever is told may let go of it
    walk_.reset();
    index_ = std::move(news.index);
    filesRead_ = news.filesRead;
    if (!news.indexText.empty()) writer_.write(std::move(news.indexText));
    if (news.corpus) corpus_ = std::move(news.corpus);
    recompute();  // also for the labels, which tell how long ago something was
    const auto done = std::exchange(walking_, {});
    if (!waiting_.empty()) walk();
    changed.emit();
    for (const auto& each : done) {
        if (each) each();
    }
}

HistoryService::ComputeInput HistoryService::stamped(ComputeInput input) const {
    input.timeZone = services_.timeZone;
    input.now = dateOf(services_.loop.wallTime());
    return input;
}

void HistoryService::recompute() {
    recomputeTask_.request_stop();
    recomputeTask_ = {};
    isSearching_ = true;
    ComputeInput input = stamped(input_);
    input.language = services_.language;
    runInBackground(
        services_.pool, services_.loop,
        [corpus = corpus_, input = std::move(input), stop = recomputeTask_.get_token()] {
            return corpus->compute(input, stop);
        },
        [weak = weak_from_this(), stop = recomputeTask_.get_token()](Found found) {
            const auto self = weak.lock();
            if (!self || stop.stop_requested()) return;
            self->found_ = std::move(found);
            self->isSearching_ = false;
            self->changed.emit();
        });
}

void HistoryService::find(ComputeInput input, std::function<void(const Found&)> done) {
    runInBackground(
        services_.pool, services_.loop,
        [corpus = corpus_, input = stamped(std::move(input))] { return corpus->compute(input); },
        [done = std::move(done)](const Found& found) { done(found); });
}

}  // namespace orvane
