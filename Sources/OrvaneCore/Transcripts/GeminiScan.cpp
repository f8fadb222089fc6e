#include "OrvaneCore/Transcripts/GeminiScan.h"

#include <algorithm>
#include <string_view>

#include "OrvaneCore/Agents/TabTitle.h"
#include "OrvaneCore/Support/Text.h"
#include "OrvaneCore/Transcripts/GeminiTranscript.h"

namespace orvane::GeminiTranscript {

namespace {

/// A text, or the texts of an array, which may hold arrays.
std::string text(const TranscriptRecord& content) {
    if (const auto whole = content.string()) return std::string(*whole);
    if (content.isObject()) return std::string(content.string("text").value_or(""));
    std::string joined;
    for (const TranscriptRecord& part : content.elements())
        joined += text(part);
    return joined;
}

bool isHarness(std::string_view text) {
    return text.starts_with("<session_context>") || text.starts_with("<hook_context>");
}

/// None when the record says nothing yet: its text comes later, in a record of the same id. A refused tool ends the
/// turn, with a text or without.
std::optional<AgentPhase> phaseOf(const TranscriptRecord& record) {
    const auto calls = record.elements(Schema::toolCalls);
    const auto anyIs = [&](std::string_view status) {
        return std::ranges::any_of(
            calls, [&](const TranscriptRecord& call) { return call.string(Schema::toolCallStatus) == status; });
    };
    if (anyIs(Schema::awaitingApproval)) return AgentPhase::awaitingApproval;
    if (std::ranges::any_of(Schema::pendingToolStatuses, anyIs)) return AgentPhase::running;
    const bool saysNothing = Text::trimmed(text(record[Schema::content])).empty() && !anyIs("cancelled");
    return saysNothing ? std::nullopt : std::optional(AgentPhase::turnEnded);
}

}  // namespace

void Scan::take(const TranscriptRecord& record) {
    if (record.contains(Schema::rewind)) {
        needPhase = needUsage = needTitle = false;
        return;
    }
    const auto kind = record.string(Schema::kind);
    if (kind == Schema::geminiMessage) takeGemini(record);
    if (kind == Schema::userMessage) takeUser(record);
    if (kind == Schema::errorMessage) decide(AgentPhase::turnEnded);
}

TranscriptReading Scan::reading() const {
    TranscriptReading reading;
    reading.model = model;
    reading.contextUsed = contextUsed;
    reading.contextWindow = contextWindow;
    reading.didClearContext = didClearContext;
    reading.phase = phase;
    reading.sessionTitle = sessionTitle;
    return reading;
}

void Scan::takeGemini(const TranscriptRecord& record) {
    if (needUsage) {
        if (const auto name = record.string(Schema::model); name && !model) {
            model = *name;
            contextWindow = GeminiTranscript::contextWindow(*name);
        }
        const auto used = record[Schema::tokens].integer(Schema::promptTokens).value_or(0);
        if (used >= 1) {
            contextUsed = used;
            needUsage = false;
        }
    }
    if (!needPhase) return;
    if (const auto newest = phaseOf(record)) decide(*newest);
}

void Scan::takeUser(const TranscriptRecord& record) {
    decide(AgentPhase::running);
    const std::string content = text(record[Schema::content]);
    const std::string_view said = Text::trimmed(content);
    if (said == "/clear") {
        didClearContext = didClearContext || needUsage;
        needUsage = false;
        return;
    }
    if (!needTitle || isHarness(said)) return;
    sessionTitle = TabTitle::fromPrompt(said);
    needTitle = !sessionTitle;
}

void Scan::decide(AgentPhase newest) {
    if (needPhase) phase = newest;
    needPhase = false;
}

}  // namespace orvane::GeminiTranscript
