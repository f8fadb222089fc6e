#include "Terminal/Workload.h"

#include "Terminal/Pieces.h"

namespace orvane::benchmark {

namespace {

constexpr Workload workloads[] = {
    {"light redraws", Pieces::lightRedraw},
    {"scrolling logs", Pieces::log, WorkloadKind::lines},
    {"short lines", Pieces::shortLine},
    {"long lines", Pieces::longLine, WorkloadKind::lines},
    {"dense cells", Pieces::denseCells, WorkloadKind::attributes},
    {"coloured source", Pieces::source},
    {"gradients", Pieces::gradient, WorkloadKind::attributes},
    {"cursor motion", Pieces::cursorMotion},
    {"scroll regions", Pieces::scrollRegion},
    {"edits", Pieces::edits},
    {"alternate screen", Pieces::alternateScreen},
    {"inline agent", Pieces::agent},
    {"synchronized frames", Pieces::synchronizedFrame},
    {"CJK logs", Pieces::cjkLog},
    // libvterm 0.1 gives each emoji of a sequence and each half of a flag cells of its own.
    {"mixed Unicode", Pieces::mixedUnicode, WorkloadKind::mixed, PeerScreen::different},
    {"links and titles", Pieces::linksAndTitles},
};

}  // namespace

std::string Workload::bytes(Geometry geometry, std::size_t size) const {
    Script script(geometry);
    while (script.bytes().size() < size)
        addPiece(script);
    return script.bytes();
}

std::span<const Workload> allWorkloads() {
    return workloads;
}

}  // namespace orvane::benchmark
