#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "Orvane/Agents/SessionController.h"
#include "OrvaneCore/Transcripts/LiveTrace.h"
#include "OrvaneShell/View/Canvas.h"
#include "OrvaneShell/View/CellRect.h"
#include "OrvaneShell/View/Painting/StyledLine.h"

namespace orvane {

class ViewContext;

/// What an agent did so far, over the right part of its pane. It reads the transcript in the background while it is
/// seen: when it opens, and whenever the transcript has grown. Main thread only.
class TracePanel {
 public:
    /// Its part of a pane's body; all of it when the pane is narrow.
    static CellRect area(const CellRect& body);

    /// Of the session that it was opened for, always the same.
    void paint(const ViewContext& view, Canvas& canvas, const CellRect& area, const SessionController& session);
    void scroll(int rows) { first_ += rows; }

 private:
    /// A state of the transcript.
    struct Seen {
        std::string path;
        std::uint64_t revision = 0;
        bool operator==(const Seen&) const = default;
    };
    struct Read;

    void follow(const ViewContext& view, const SessionController& session);
    void read(const ViewContext& view, const SessionController& session);
    void take(const ViewContext& view, Read read);
    void makeLines(const ViewContext& view, int cols);

    std::optional<Seen> seen_;  ///< read, or being read
    std::optional<LiveTrace> report_;
    std::string error_;  ///< why the transcript could not be read; empty when it could
    bool isReading_ = false;
    /// The next look is not before, so that a long transcript does not keep a processor busy.
    Instant nextReadAt_;
    Registration timer_;
    std::vector<StyledLine> lines_;
    int linesCols_ = 0;
    int first_ = 0;  ///< of `lines_`, in the topmost row
    std::shared_ptr<TracePanel*> self_ = std::make_shared<TracePanel*>(this);
};

}  // namespace orvane
