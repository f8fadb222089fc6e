#include <algorithm>
#include <string>
#include <vector>

#include "Fuzzing.h"
#include "OrvaneCore/Agents/Signals/AgentScreen.h"
#include "OrvaneCore/Support/Text.h"

using namespace orvane;
using fuzzing::require;

namespace {

void checkOptions(const AgentScreenReading& reading) {
    const auto isReadable = [](const std::string& text) { return Text::isValidUtf8(text) && !text.contains('\n'); };
    for (const PrintedOption& option : reading.options) {
        require(!option.label.empty() && isReadable(option.label) && isReadable(option.detail), "labels can be shown");
        require(option.number >= 0 && option.number < 100, "numbers are those of a screen");
    }
    require(isReadable(reading.question), "the question can be shown");
    if (!reading.request) return;
    const auto& offered = reading.request->options;
    require(!reading.request->detail.empty(), "a request asks something");
    for (std::size_t place = 0; place < offered.size(); ++place) {
        const auto fits = [&](const PrintedOption& option) {
            return option.number == static_cast<int>(place) + 1 && option.label == offered[place];
        };
        require(std::ranges::any_of(reading.options, fits), "the digit of an option's place answers it");
    }
}

/// Whether a row has the draft's first line behind a marker: it holds nothing of what is drawn around it.
bool standsBehindMarker(const std::string& draft, const std::string& row) {
    const std::string line = draft.substr(0, draft.find('\n'));
    const std::size_t marker = row.find_first_not_of(' ');
    for (std::size_t at = row.find(line); at != std::string::npos; at = row.find(line, at + 1)) {
        if (at > marker) return true;
    }
    return false;
}

}  // namespace

/// The first byte chooses the agent and the width; the first line is the title, the others are rows, faint behind 0x01.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) return 0;
    constexpr SessionKind kinds[] = {SessionKind::claude, SessionKind::codex, SessionKind::gemini, SessionKind::custom};
    AgentScreen screen{.kind = kinds[data[0] % 4], .rows = {}, .dimmed = {}, .title = {}, .columns = data[0] / 4 * 4};
    std::string_view text = fuzzing::asText(data + 1, size - 1);
    while (!text.empty()) {
        const std::string_view row = text.substr(0, text.find('\n'));
        screen.dimmed.push_back(row.starts_with('\x01'));
        screen.rows.emplace_back(row.substr(screen.dimmed.back() ? 1 : 0));
        text.remove_prefix(std::min(text.size(), row.size() + 1));
    }
    if (!screen.rows.empty()) screen.title = screen.rows.front();
    const AgentScreenReading reading = screen.read();
    checkOptions(reading);
    require(!reading.busy || !reading.dialogUp, "who asks does not work");
    require(!reading.draft || reading.options.empty(), "a draft is no dialog");
    const auto holds = [&](const std::string& row) { return standsBehindMarker(*reading.draft, row); };
    require(!reading.draft || reading.draft->starts_with('\n') || reading.draft->empty() ||
                std::ranges::any_of(screen.rows, holds),
            "a draft is what stands behind a marker");
    return 0;
}
