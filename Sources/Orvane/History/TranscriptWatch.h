#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "Orvane/History/TranscriptBindings.h"
#include "Orvane/History/TranscriptTail.h"
#include "OrvaneCore/Support/Uuid.h"
#include "OrvaneCore/Transcripts/SessionTelemetry.h"
#include "OrvaneCore/Transcripts/TranscriptReading.h"
#include "Platform/BackgroundPool.h"
#include "Platform/FolderWatch.h"
#include "Platform/MainLoop.h"

namespace orvane {

/// Finds the transcript of a session, follows it as it grows and tells what its end says. The files are read on the
/// pool, one look at a time, and each look reads only what is new. Main thread only.
class TranscriptWatch {
 public:
    static constexpr Duration interval = std::chrono::seconds(4);
    static constexpr Duration tolerance = std::chrono::seconds(1);

    /// What the files are read with.
    struct Files {
        BackgroundPool* pool = nullptr;  ///< must outlive it
        std::shared_ptr<TranscriptBindings> bindings;
        /// The user's home folder, where agents keep their files.
        std::string home;
    };
    enum class News { grown, anotherFile };
    using Growth = std::function<void(News)>;

    /// The loop must outlive it.
    TranscriptWatch(const Uuid& session, SessionTelemetry telemetry, MainLoop& loop, Files files, Growth onGrowth);
    TranscriptWatch(const TranscriptWatch&) = delete;
    TranscriptWatch& operator=(const TranscriptWatch&) = delete;
    ~TranscriptWatch();

    void start();
    /// No more looks; what the last one told stays.
    void stop();
    /// The agent is given something to do.
    void notePrompt();
    /// The conversation begins anew.
    void noteClear();
    /// Looks soon, as every interval.
    void tick();

    /// What it told last; absent fields keep what an earlier look told.
    const TranscriptReading& reading() const { return reading_; }
    const std::optional<std::string>& path() const { return telemetry_.boundURL; }
    /// By which the conversation can be taken up again; none before its transcript is found, or found again after a
    /// clear.
    std::optional<std::string> conversationID() const {
        return path() && !telemetry_.expectsSuccessor ? telemetry_.resumeID : std::nullopt;
    }
    /// When the transcript was last written to, at the last look.
    Date writtenAt() const { return telemetry_.lastModified.value_or(Date{}); }
    /// Rises whenever the transcript has grown.
    std::uint64_t revision() const { return revision_; }

 private:
    struct Look;
    void take(Look look);
    void follow(const std::string& path);

    Uuid session_;
    SessionTelemetry telemetry_;
    MainLoop& loop_;
    Files files_;
    Growth onGrowth_;
    TranscriptReading reading_;
    std::uint64_t revision_ = 0;
    std::optional<Date> prompt_;            ///< since the last look began
    std::unique_ptr<TranscriptTail> tail_;  ///< with the pool while it looks
    std::uint64_t clears_ = 0;
    bool isFileUntold_ = false;
    bool isLooking_ = false;
    bool isWantedAgain_ = false;
    Registration timer_;
    std::unique_ptr<FolderWatch> folder_;
    std::string watchedFolder_;
    std::shared_ptr<bool> isAlive_ = std::make_shared<bool>(true);
};

}  // namespace orvane
