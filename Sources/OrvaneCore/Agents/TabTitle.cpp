#include "OrvaneCore/Agents/TabTitle.h"

#include "OrvaneCore/Agents/Signals/Glyphs.h"
#include "OrvaneCore/Chat/ApprovalPolicy.h"
#include "OrvaneCore/Support/Text.h"
#include "OrvaneCore/Transcripts/CodexMessage.h"
#include "OrvaneCore/Transcripts/TranscriptLine.h"

namespace orvane::TabTitle {

namespace {

constexpr std::string_view modeOpening = "<orvane-mode";
constexpr std::string_view modeEnd = "</orvane-mode>";

/// Glyphs that agents set before their titles while idle or busy.
bool isMark(std::string_view glyph) {
    return Glyphs::turns(glyph) || Glyphs::isOneOf(glyph, {"✳", "✢", "✶", "✻", "✽", "·", "✦", "⏲", "◇", "✋"});
}

/// Without the briefing that we put before a prompt ourselves.
std::string_view withoutMode(std::string_view text) {
    const std::string_view trimmed = Text::trimmed(text);
    if (!trimmed.starts_with(modeOpening)) return trimmed;
    const std::size_t end = trimmed.find(modeEnd);
    return end == std::string_view::npos ? std::string_view() : Text::trimmed(trimmed.substr(end + modeEnd.size()));
}

/// "/compact now", but not "/home/me/file is broken".
bool isCommand(std::string_view text) {
    const std::string_view word = text.substr(0, text.find_first_of(" \t\n\r"));
    return word.starts_with('/') && word.find('/', 1) == std::string_view::npos;
}

bool isWrittenByAPerson(std::string_view text) {
    return !text.starts_with('<') && !text.starts_with('[') && !text.starts_with("Caveat:") && !isCommand(text) &&
           !CodexMessage::isOfHarness(text);
}

}  // namespace

std::optional<std::string> clean(std::string_view title) {
    const std::string row = Text::oneLine(title);
    std::string_view rest = row;
    while (isMark(Glyphs::first(rest))) {
        rest.remove_prefix(Glyphs::first(rest).size());
        Glyphs::dropBlanks(rest);
    }
    return rest.empty() ? std::nullopt : std::optional<std::string>(rest);
}

std::optional<std::string> fromPrompt(std::string_view text) {
    const std::string_view prompt = withoutMode(text);
    if (!isWrittenByAPerson(prompt)) return std::nullopt;
    // Far more than a title takes: a pasted log of megabytes is not cleaned as a whole.
    const auto title = clean(prompt.substr(0, longest * 64));
    return title ? std::optional(ApprovalPolicy::clean(*title, longest)) : std::nullopt;
}

std::optional<std::string> fromCodexUserMessageLine(std::string_view line) {
    TranscriptParser parser;
    const auto record = TranscriptLine::parsed(parser, line);
    return record ? fromPrompt(CodexMessage::ofUser(*record)) : std::nullopt;
}

std::optional<std::string> fromCodexAgentMessageLine(std::string_view line) {
    TranscriptParser parser;
    const auto record = TranscriptLine::parsed(parser, line);
    return record ? fromPrompt(CodexMessage::ofAgent(*record)) : std::nullopt;
}

}  // namespace orvane::TabTitle
