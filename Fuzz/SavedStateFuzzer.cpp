#include <boost/json.hpp>
#include <ranges>

#include "Fuzzing.h"
#include "OrvaneCore/Workspace/SavedState.h"

using namespace orvane;
using fuzzing::require;

namespace {

/// Dates are written in milliseconds and within the years that ISO 8601 has.
template <typename Entry>
void roundDates(std::vector<Entry>& entries) {
    for (Entry& entry : entries)
        entry.at = *Date::parseIso8601(entry.at.iso8601());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto json = Json::parse(fuzzing::asText(data, size));
    const auto read = json ? SavedState::decode(*json) : std::nullopt;
    if (!read) return 0;
    const SavedState state = read->completed("Workspace");
    require(state.completed("other") == state, "a completed state lacks nothing");
    const auto written = Json::parse(Json::write(state.encode(), Json::Layout::indented));
    require(written.has_value(), "a state file is JSON");
    const auto again = SavedState::decode(*written);
    require(again.has_value(), "a state file is one");
    // Members of other builds are JSON, whose numbers are equal by value; they are JsonFuzzer's.
    SavedState expected = state;
    expected.others = again->others;
    for (auto& [project, strip] : *expected.surfaces) {
        for (SurfaceMeta& meta : strip | std::views::transform(&SavedSurface::meta)) {
            roundDates(meta.chatHistory);
            roundDates(meta.chatModelMarks);
            roundDates(meta.chatNotes);
        }
    }
    require(expected == *again, "a state reads back equal");
    return 0;
}
