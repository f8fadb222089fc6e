#include <algorithm>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

#include "Fuzzing.h"
#include "OrvaneCore/Support/Text.h"
#include "OrvaneCore/Transcripts/ClaudeTranscript.h"
#include "OrvaneCore/Transcripts/CodexTranscript.h"
#include "OrvaneCore/Transcripts/Form/TranscriptForm.h"
#include "OrvaneCore/Transcripts/GeminiTranscript.h"

using namespace orvane;
using fuzzing::require;

namespace {

using Lines = std::span<const std::string_view>;

void check(const std::optional<TranscriptReading>& reading) {
    if (!reading) return;
    require(reading->contextUsed.value_or(1) >= 1 && reading->contextWindow.value_or(1) >= 1, "figures are positive");
    for (const auto& text : {reading->sessionTitle, reading->pendingToolName, reading->pendingToolTarget}) {
        require(!text || (!text->empty() && Text::isValidUtf8(*text) && !text->contains('\n')), "texts can be shown");
    }
}

void checkForm(TranscriptProvider provider, Lines lines, std::optional<TranscriptReading> (*parse)(Lines)) {
    check(parse(lines));
    const NormalizedLines form = TranscriptForm::normalized(provider, lines);
    check(parse(form));
    require(std::ranges::none_of(form.lines(), [](auto line) { return line.contains('\n'); }), "lines stay lines");
    TranscriptForm::notUnderstood(provider, lines);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::vector<std::string_view> lines;
    for (std::string_view text = fuzzing::asText(data, size); !text.empty();) {
        lines.push_back(text.substr(0, text.find('\n')));
        text.remove_prefix(std::min(text.size(), lines.back().size() + 1));
    }
    checkForm(TranscriptProvider::claude, lines, ClaudeTranscript::parse);
    checkForm(TranscriptProvider::codex, lines, CodexTranscript::parse);
    checkForm(TranscriptProvider::gemini, lines, GeminiTranscript::parse);
    CodexTranscript::belongsToProject(lines, "/p");
    GeminiTranscript::belongsToProject(lines, "/p");
    ClaudeTranscript::isClearSuccessor(lines);
    return 0;
}
