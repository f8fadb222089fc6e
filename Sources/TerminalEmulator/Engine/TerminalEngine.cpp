#include "TerminalEmulator/Engine/TerminalEngine.h"

#include <string>

#include "TerminalEmulator/Engine/CsiDispatch.h"
#include "TerminalEmulator/Engine/CursorFunctions.h"
#include "TerminalEmulator/Engine/EscapeFunctions.h"
#include "TerminalEmulator/Engine/OscFunctions.h"

namespace orvane {

void TerminalEngine::reset() {
    parser_.reset();
    printer_.reset();
    state.reset();
}

void TerminalEngine::execute(std::uint8_t code) {
    printer_.finishCharacter();
    switch (code) {
        case '\a':
            state.delegate.bell();
            break;
        case '\b':
            CursorFunctions::back(state, 1);
            break;
        case '\t':
            CursorFunctions::tabForward(state, 1);
            break;
        case '\n':
        case '\v':
        case '\f':
            state.lineFeed();
            break;
        case '\r':
            state.carriageReturn();
            break;
        case 0x0E:  // LS1
            state.charsets.gLevel = 1;
            break;
        case 0x0F:  // LS0
            state.charsets.gLevel = 0;
            break;
        case 0x84:  // IND
            state.index();
            break;
        case 0x85:  // NEL
            state.buffer->setX(state.modes.originMode ? state.leftMargin() : 0);
            state.index();
            break;
        case 0x88:  // HTS
            CursorFunctions::setTab(state);
            break;
        default:
            break;
    }
}

void TerminalEngine::csiDispatch(const CsiArguments& arguments) {
    if (arguments.function == csiFunction('b')) {
        printer_.repeat(arguments.parameters.valueOr(0, 1));
    } else if (!orvane::csiDispatch(state, arguments)) {
        state.log("Unknown CSI Code (collect=", std::string(arguments.collect) + " code=" + arguments.final + ")");
    }
}

void TerminalEngine::escDispatch(char final, std::string_view collect) {
    if (collect.empty() && final == 'c') {
        reset();
    } else if (!EscapeFunctions::dispatch(state, final, collect)) {
        state.log("Unknown ESC Code: ESC + ", std::string(collect) + final);
    }
}

void TerminalEngine::oscDispatch(std::int32_t code, std::string_view payload, StringEnd end) {
    const auto handler = oscHandlers.find(code);
    if (handler == oscHandlers.end()) {
        OscFunctions::dispatch(state, code, payload, end);
        return;
    }
    // It may register another one in its own place.
    const Terminal::OscHandler call = handler->second;
    call(payload, end);
}

/// "G" are inline graphics, which are not shown here.
void TerminalEngine::apcDispatch(char identifier, std::string_view payload, StringEnd /*end*/) {
    if (identifier != 'G') state.log("Unknown APC code: ", identifier + std::string(payload));
}

DcsHandler* TerminalEngine::dcsHandler(std::string_view collect, const ParserParameters& /*parameters*/, char final) {
    if (collect == "$" && final == 'q') return &statusRequest_;
    if (collect == "$" && final == 't') return &presentationRestore_;
    if (collect == "+" && final == 'q') return &capabilityRequest_;
    return nullptr;
}

}  // namespace orvane
