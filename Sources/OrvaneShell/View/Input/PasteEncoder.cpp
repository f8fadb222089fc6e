#include "OrvaneShell/View/Input/PasteEncoder.h"

#include <utility>

#include "OrvaneShell/View/Input/KeyCharacters.h"
#include "TerminalEmulator/Unicode/Utf8Decoder.h"
#include "TerminalEmulator/Unicode/Utf8Encoder.h"

namespace orvane {

namespace {

bool mayBePasted(char32_t character) {
    return !isControlCharacter(character) || character == U'\t' || character == U'\r' || character == U'\n';
}

/// CR LF is one line end.
void appendPlain(char32_t character, bool followsReturn, std::string& bytes) {
    if (character == U'\n' && followsReturn) return;
    appendUtf8(character == U'\n' ? U'\r' : character, bytes);
}

}  // namespace

PasteForm pasteForm(const TerminalModes& modes) {
    return modes.bracketedPasteMode ? PasteForm::bracketed : PasteForm::plain;
}

std::string_view pasteBegin(PasteForm form) {
    return form == PasteForm::bracketed ? "\x1b[200~" : "";
}

std::string_view pasteEnd(PasteForm form) {
    return form == PasteForm::bracketed ? "\x1b[201~" : "";
}

std::string encodePaste(std::string_view piece, PasteForm form) {
    std::string bytes;
    bytes.reserve(piece.size());
    bool followsReturn = false;
    const auto take = [&](char32_t character) {
        const bool followed = std::exchange(followsReturn, character == U'\r');
        if (!mayBePasted(character)) return;
        if (form == PasteForm::plain) {
            appendPlain(character, followed, bytes);
        } else {
            appendUtf8(character, bytes);
        }
    };
    Utf8Decoder decoder;
    decoder.decode(piece, take);
    decoder.finish(take);
    return bytes;
}

}  // namespace orvane
