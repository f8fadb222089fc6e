#include <string>

#include "OrvaneShell/View/Input/SequenceMeaning.h"
#include "TerminalEmulator/Engine/ColorSpec.h"

namespace orvane::SequenceMeaning {

namespace {

using Kind = ReplyEvent::Kind;

/// F3 with modifiers is written like the cursor in the top row: "1;2" to "1;16" are the key. Who asks for the position
/// does it by DECXCPR, or from another row.
bool isF3(const ControlSequence& sequence) {
    const int modifiers = sequence.valueOr(1, 1);
    return sequence.isPlain() &&
           (sequence.parameters.size() < 2 || (sequence.valueOr(0, 1) == 1 && modifiers > 1 && modifiers <= 16));
}

/// Nothing for a sequence that no terminal answers with.
std::optional<Kind> kindOf(const ControlSequence& sequence) {
    const bool isPrivate = sequence.prefix == '?';
    // Behind '<' terminals tell of the mouse alone.
    const bool isAnswer = isPrivate || sequence.prefix == '>' || sequence.prefix == '=';
    const auto other = isAnswer ? std::optional(Kind::other) : std::nullopt;
    if (sequence.final == 'y' && sequence.intermediates == "$" && sequence.parameters.size() == 2) {
        return isPrivate ? Kind::modeReport : Kind::other;
    }
    if (!sequence.intermediates.empty()) return {};
    switch (sequence.final) {
        case 'c':
            return isPrivate ? Kind::primaryAttributes : Kind::other;
        case 'u':
            return isPrivate ? Kind::keyboardFlags : other;
        case 'R':
            return isF3(sequence) ? other : Kind::cursorPosition;
        case 'n':
            // CSI ? 997 ; 1 n, which DECSET 2031 asks for.
            return isPrivate && sequence.parameters.size() == 2 && sequence.valueOr(0, 0) == 997 ? Kind::colorScheme
                                                                                                 : Kind::other;
        case 't':
            return Kind::other;
        default:
            return other;
    }
}

/// "OSC 11 ; rgb:1e1e/1e1e/2e2e ST".
std::optional<TerminalColor> backgroundOf(std::string_view bytes) {
    constexpr std::string_view begin = "\x1b]11;";
    if (!bytes.starts_with(begin)) return {};
    bytes.remove_prefix(begin.size());
    bytes = bytes.substr(0, bytes.find_first_of("\x07\x1b"));
    // With an alpha channel, as some terminals have it, the first three count.
    if (!bytes.starts_with("rgba:")) return ColorSpec::parse(bytes);
    return ColorSpec::parse("rgb:" + std::string(bytes.substr(5, bytes.rfind('/') - 5)));
}

}  // namespace

std::optional<FocusEvent> focus(const ControlSequence& sequence) {
    const bool isReport = sequence.isPlain() && sequence.parameters.empty();
    if (!isReport || (sequence.final != 'I' && sequence.final != 'O')) return {};
    return FocusEvent{.hasFocus = sequence.final == 'I'};
}

std::optional<ReplyEvent> reply(const ControlSequence& sequence, std::string_view bytes) {
    const auto kind = kindOf(sequence);
    if (!kind) return {};
    ReplyEvent event{.kind = *kind, .parameters = sequence.values(), .text = std::string(bytes)};
    if (event.kind == Kind::colorScheme) event.parameters.erase(event.parameters.begin());
    return event;
}

ReplyEvent stringReply(std::string_view bytes) {
    ReplyEvent event{.text = std::string(bytes)};
    if (const auto color = backgroundOf(bytes)) {
        event.kind = Kind::backgroundColor;
        event.parameters = {color->red >> 8, color->green >> 8, color->blue >> 8};
    }
    return event;
}

}  // namespace orvane::SequenceMeaning
