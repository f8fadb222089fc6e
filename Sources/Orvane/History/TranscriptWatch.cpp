#include "Orvane/History/TranscriptWatch.h"

#include <filesystem>
#include <utility>

#include "Orvane/History/TranscriptEnds.h"
#include "Orvane/History/TranscriptLocator.h"
#include "Orvane/Support/WallClock.h"
#include "OrvaneCore/Transcripts/ConversationID.h"
#include "OrvaneCore/Transcripts/TranscriptReader.h"

namespace orvane {

namespace {

Date wallNow(const MainLoop& loop) {
    return dateOf(loop.wallTime());
}

/// What the end of a long transcript no longer tells stays as it was told before.
TranscriptReading joined(TranscriptReading reading, const TranscriptReading& before) {
    const auto keep = [](auto& field, const auto& old) {
        if (!field) field = old;
    };
    keep(reading.model, before.model);
    keep(reading.contextWindow, before.contextWindow);
    keep(reading.permissionMode, before.permissionMode);
    keep(reading.sessionTitle, before.sessionTitle);
    keep(reading.phase, before.phase);
    if (!reading.didClearContext) keep(reading.contextUsed, before.contextUsed);
    return reading;
}

}  // namespace

/// One look at the files, on the pool.
struct TranscriptWatch::Look {
    SessionTelemetry telemetry;
    std::string home;
    std::set<std::string> taken;
    bool isSearching = false;
    std::uint64_t clears = 0;
    std::unique_ptr<TranscriptTail> tail;

    bool isNewFile = false;
    TranscriptTail::Change change = TranscriptTail::Change::none;
    std::optional<TranscriptReading> reading;

    void run() {
        const auto found = isSearching ? TranscriptLocator::find(telemetry, home, taken) : std::nullopt;
        if (found && found != telemetry.boundURL) {
            telemetry.bind(*found);
            telemetry.resumeID.reset();
            tail.reset();
            isNewFile = true;
        }
        if (!telemetry.boundURL) return;
        if (!tail) tail = std::make_unique<TranscriptTail>(*telemetry.boundURL);
        change = tail->check();
        telemetry.lastSize = tail->size();
        telemetry.lastModified = tail->modifiedAt();
        TranscriptEnds ends;
        if (!telemetry.resumeID && ends.read(*telemetry.boundURL)) {
            telemetry.resumeID = orvane::conversationID(telemetry.kind, *telemetry.boundURL, ends.head());
        }
        const bool hasNews = change == TranscriptTail::Change::grown || change == TranscriptTail::Change::replaced;
        if (hasNews) reading = TranscriptReader::read(telemetry.kind, tail->lines());
    }
};

TranscriptWatch::TranscriptWatch(const Uuid& session, SessionTelemetry telemetry, MainLoop& loop, Files files,
                                 Growth onGrowth)
    : session_(session),
      telemetry_(std::move(telemetry)),
      loop_(loop),
      files_(std::move(files)),
      onGrowth_(std::move(onGrowth)) {}

TranscriptWatch::~TranscriptWatch() {
    files_.bindings->release(session_);
}

void TranscriptWatch::start() {
    timer_ = loop_.every(interval, tolerance, [this] { tick(); });
    tick();
}

void TranscriptWatch::stop() {
    timer_.reset();
    folder_.reset();
    // The last words of a program that ends are of use to whoever reads its history.
    tick();
    // Another session may go on with the conversation.
    files_.bindings->release(session_);
}

void TranscriptWatch::notePrompt() {
    prompt_ = wallNow(loop_);
}

void TranscriptWatch::noteClear() {
    ++clears_;
    telemetry_.noteClear(wallNow(loop_));
    reading_.phase.reset();
    reading_.contextUsed.reset();
    reading_.didClearContext = true;
}

void TranscriptWatch::tick() {
    if (std::exchange(isLooking_, true)) {
        isWantedAgain_ = true;
        return;
    }
    if (const auto prompted = std::exchange(prompt_, std::nullopt)) telemetry_.notePrompt(*prompted);
    Look look{.telemetry = telemetry_,
              .home = files_.home,
              .taken = files_.bindings->ofOthers(session_),
              .isSearching = telemetry_.isSearching(wallNow(loop_)),
              .clears = clears_,
              .tail = std::move(tail_)};
    runInBackground(
        *files_.pool, loop_,
        [look = std::move(look)]() mutable {
            try {
                look.run();
            } catch (...) {
                // Out of memory over a file of somebody else: the next look may do better.
                BackgroundPool::reportEscapedException();
                look.reading.reset();
            }
            return std::move(look);
        },
        [this, alive = std::weak_ptr(isAlive_)](Look done) {
            if (!alive.expired()) take(std::move(done));
        });
}

void TranscriptWatch::take(Look look) {
    isLooking_ = false;
    // Cleared meanwhile: it has looked at what is over now.
    const bool isCurrent = look.clears == clears_;
    if (isCurrent && (!look.isNewFile || files_.bindings->claim(session_, *look.telemetry.boundURL))) {
        if (look.isNewFile) {
            reading_ = {};
            isFileUntold_ = true;
        }
        telemetry_ = std::move(look.telemetry);
        tail_ = std::move(look.tail);
        if (telemetry_.boundURL && timer_) follow(*telemetry_.boundURL);
        // Of a conversation that was cleared nothing is of interest any more.
        if (look.reading && !telemetry_.expectsSuccessor) {
            reading_ = joined(*std::move(look.reading), reading_);
            ++revision_;
        } else {
            look.reading.reset();
        }
        const News news = std::exchange(isFileUntold_, false) ? News::anotherFile : News::grown;
        if (look.reading || news == News::anotherFile) onGrowth_(news);
    }
    if (std::exchange(isWantedAgain_, false)) tick();
}

/// A file that is only appended to is told of by its folder's watch; where there is none the timer has to do.
void TranscriptWatch::follow(const std::string& path) {
    std::string folder = std::filesystem::path(path).parent_path();
    if (folder_ && folder == watchedFolder_) return;
    watchedFolder_ = std::move(folder);
    auto watch = FolderWatch::create(loop_, watchedFolder_, [this](FolderWatch::Change change) {
        if (change == FolderWatch::Change::folderGone) folder_.reset();
        tick();
    });
    folder_ = watch ? *std::move(watch) : nullptr;
}

}  // namespace orvane
