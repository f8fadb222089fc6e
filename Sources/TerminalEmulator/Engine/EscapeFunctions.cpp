#include "TerminalEmulator/Engine/EscapeFunctions.h"

#include <string>

#include "TerminalEmulator/Engine/CursorFunctions.h"
#include "TerminalEmulator/Engine/EditFunctions.h"
#include "TerminalEmulator/Engine/ReportFunctions.h"

namespace orvane::EscapeFunctions {

namespace {

bool shift(TerminalState& state, char final) {
    CharsetState& charsets = state.charsets;
    switch (final) {
        case 'n':  // LS2
            charsets.gLevel = 2;
            return true;
        case 'o':  // LS3
            charsets.gLevel = 3;
            return true;
        case '~':  // LS1R
            charsets.gRightLevel = 1;
            return true;
        case '}':  // LS2R
            charsets.gRightLevel = 2;
            return true;
        case '|':  // LS3R
            charsets.gRightLevel = 3;
            return true;
        case 'N':  // SS2
            charsets.singleShift = 2;
            return true;
        case 'O':  // SS3
            charsets.singleShift = 3;
            return true;
        default:
            return false;
    }
}

bool plain(TerminalState& state, char final) {
    switch (final) {
        case 'D':
            state.index();
            return true;
        case 'E':  // NEL
            state.index();
            state.carriageReturn();
            return true;
        case 'H':
            CursorFunctions::setTab(state);
            return true;
        case 'M':
            state.reverseIndex();
            return true;
        case 'Z':  // DECID
            ReportFunctions::sendPrimaryAttributes(state);
            return true;
        case '6':
            EditFunctions::backIndex(state);
            return true;
        case '7':
            state.saveCursor();
            return true;
        case '8':
            state.restoreCursor();
            return true;
        case '9':
            EditFunctions::forwardIndex(state);
            return true;
        case '=':
            state.modes.applicationKeypad = true;
            return true;
        case '>':
            state.modes.applicationKeypad = false;
            return true;
        case 'V':  // SPA
            state.protectedMode = TerminalState::ProtectedMode::iso;
            state.buffer->pen.setIsProtected(true);
            return true;
        case 'W':  // EPA
            state.buffer->pen.setIsProtected(false);
            return true;
        case '\\':  // the end of a string
            return true;
        default:
            return shift(state, final);
    }
}

bool lineAttribute(TerminalState& state, char final) {
    switch (final) {
        case '3':
            EditFunctions::setRenderMode(state, RenderLineMode::doubledTop);
            return true;
        case '4':
            EditFunctions::setRenderMode(state, RenderLineMode::doubledDown);
            return true;
        case '5':
            EditFunctions::setRenderMode(state, RenderLineMode::single);
            return true;
        case '6':
            EditFunctions::setRenderMode(state, RenderLineMode::doubleWidth);
            return true;
        case '8':
            EditFunctions::alignmentPattern(state);
            return true;
        default:
            return false;
    }
}

/// SCS: "(" to "+" designate sets of 94 characters to G0 to G3, "-" to "/" sets of 96 to G1 to G3.
bool designate(TerminalState& state, char final, std::string_view collect) {
    const char where = collect.front();
    std::string designator(collect.substr(1));
    designator += final;
    const bool isOf94 = where >= '(' && where <= '+';
    if (!isOf94 && (where < '-' || where > '/')) return false;
    const auto set = charsetDesignated(designator, isOf94 ? CharsetSize::of94 : CharsetSize::of96);
    if (!set) return false;
    state.charsets.gCharsets[static_cast<std::size_t>(isOf94 ? where - '(' : where - '-' + 1)] = *set;
    return true;
}

}  // namespace

bool dispatch(TerminalState& state, char final, std::string_view collect) {
    if (collect.empty()) return plain(state, final);
    if (collect == " " && (final == 'F' || final == 'G')) {
        state.send8bit = final == 'G';
        return true;
    }
    if (collect == "#") return lineAttribute(state, final);
    // Text is UTF-8, whatever a program designates.
    if (collect == "%") return final == '@' || final == 'G';
    return designate(state, final, collect);
}

}  // namespace orvane::EscapeFunctions
