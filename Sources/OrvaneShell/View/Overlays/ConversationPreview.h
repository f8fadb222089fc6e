#pragma once

#include <deque>
#include <expected>
#include <memory>
#include <optional>
#include <stop_token>
#include <string>
#include <utility>
#include <vector>

#include "OrvaneCore/History/SessionRecord.h"
#include "OrvaneCore/Transcripts/TranscriptFeed.h"
#include "OrvaneShell/View/CanvasPen.h"
#include "OrvaneShell/View/Painting/StyledLine.h"
#include "Platform/SystemError.h"

namespace orvane {

class ViewContext;

/// One conversation at a glance: its facts and its last messages, which are read in the background, one transcript at a
/// time, however fast somebody runs through a list. Main thread only.
class ConversationPreview {
 public:
    /// The conversation that is shown from now on.
    void show(const ViewContext& view, const SessionRecord& record);
    void clear() { record_.reset(); }
    void paint(const ViewContext& view, CanvasPen& pen, const CellRect& area);
    /// Towards older messages when negative.
    void scroll(int rows) { above_ -= rows; }
    /// Of the messages, as the last frame had them.
    int pageRows() const { return pageRows_; }

 private:
    using Entries = std::expected<std::vector<TranscriptFeed::Entry>, SystemError>;
    /// A transcript as it was: one that has grown since is another one.
    struct Read {
        std::string path;
        Date lastActivityAt;
        Entries entries;
    };

    void read(const ViewContext& view);
    void take(const ViewContext& view, Read read);
    /// The transcript as it is now; null when it is still to be read.
    const Read* known() const;
    /// While it is read anew, as it was.
    const Read* latest() const;
    std::vector<StyledLine> facts(const ViewContext& view, int cols) const;
    void paintThread(const ViewContext& view, CanvasPen& pen, const CellRect& area);

    std::optional<SessionRecord> record_;
    std::deque<Read> reads_;  ///< the newest last
    bool isReading_ = false;
    std::stop_source reading_;
    /// Of the thread, as wide as it was drawn.
    std::vector<StyledLine> lines_;
    int linesCols_ = 0;
    const Read* linesOf_ = nullptr;
    int above_ = 0;  ///< rows from the newest
    int pageRows_ = 1;
    std::shared_ptr<ConversationPreview*> self_ = std::make_shared<ConversationPreview*>(this);
};

}  // namespace orvane
