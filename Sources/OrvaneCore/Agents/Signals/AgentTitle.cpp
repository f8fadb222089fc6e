#include "OrvaneCore/Agents/Signals/AgentTitle.h"

#include "OrvaneCore/Agents/Signals/CodexSignals.h"
#include "OrvaneCore/Agents/Signals/Glyphs.h"

namespace orvane::AgentTitle {

namespace {

std::string_view mark(std::string_view title) {
    Glyphs::dropBlanks(title);
    return Glyphs::first(title);
}

}  // namespace

SilenceVerdict claude(std::string_view title) {
    const std::string_view glyph = mark(title);
    if (Glyphs::turns(glyph)) return SilenceVerdict::working;
    return glyph == "✳" ? SilenceVerdict::finished : SilenceVerdict::unknown;
}

SilenceVerdict codex(std::string_view title) {
    if (CodexSignals::isActionRequired(title)) return SilenceVerdict::needsUser;
    return Glyphs::turns(mark(title)) ? SilenceVerdict::working : SilenceVerdict::unknown;
}

SilenceVerdict gemini(std::string_view title) {
    const std::string_view glyph = mark(title);
    if (glyph == "✋" || title.contains("Action Required")) return SilenceVerdict::needsUser;
    if (Glyphs::isOneOf(glyph, {"✦", "⏲"}) || Glyphs::turns(glyph)) return SilenceVerdict::working;
    return glyph == "◇" ? SilenceVerdict::finished : SilenceVerdict::unknown;
}

SilenceVerdict verdict(SessionKind kind, std::string_view title) {
    switch (kind) {
        case SessionKind::claude:
            return claude(title);
        case SessionKind::codex:
            return codex(title);
        case SessionKind::gemini:
            return gemini(title);
        case SessionKind::shell:
        case SessionKind::service:
        case SessionKind::custom:
            return SilenceVerdict::unknown;
    }
    return SilenceVerdict::unknown;
}

}  // namespace orvane::AgentTitle
