#include "OrvaneCore/Agents/Signals/KeyHints.h"

#include "OrvaneCore/Support/Regex.h"

namespace orvane::KeyHints {

bool decides(std::string_view row) {
    // A key, more keys perhaps, and what they do; at the beginning of the row or of one of its parts.
    static const Regex keyAndEffect = *Regex::compile(
        R"((?:^|[·•|,(]|\bor\b|\bpress\b)\s*(?:(?:the\s+)?(?:enter|return|⏎|↵|esc|escape|space|any key|[↑↓]\s?/\s?[↑↓]))"
        R"((?:\s?/\s?\w+)?)(?:\s+keys?)?\s+(?:to\s+)?)"
        R"((?:confirm|cancel|select|continue|submit|amend|navigate|save|exit|go|back|accept|reject|approve|allow|trust)"
        R"(|deny|skip|proceed|choose|toggle|apply|dismiss|close|quit|answer|switch|change|finish|return)\b)",
        {.ignoresCase = true});
    static const Regex pressToAct =
        *Regex::compile(R"(^\W*press\s(?!.*\b(?:again|interrupt|edit)\b).*\sto\s)", {.ignoresCase = true});
    return keyAndEffect.matches(row) || pressToAct.matches(row);
}

bool interrupts(std::string_view row) {
    static const Regex key = *Regex::compile(R"(\bto interrupt|\besc to i\w*…)", {.ignoresCase = true});
    return key.matches(row);
}

}  // namespace orvane::KeyHints
