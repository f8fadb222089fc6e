#include "TerminalEmulator/Engine/CsiDispatch.h"

#include <algorithm>
#include <array>
#include <cstddef>

#include "TerminalEmulator/Engine/ChecksumFunctions.h"
#include "TerminalEmulator/Engine/CursorFunctions.h"
#include "TerminalEmulator/Engine/EditFunctions.h"
#include "TerminalEmulator/Engine/KeyboardFunctions.h"
#include "TerminalEmulator/Engine/ModeFunctions.h"
#include "TerminalEmulator/Engine/PresentationReports.h"
#include "TerminalEmulator/Engine/RectangleFunctions.h"
#include "TerminalEmulator/Engine/ReportFunctions.h"
#include "TerminalEmulator/Engine/SgrFunction.h"
#include "TerminalEmulator/Engine/TitleFunctions.h"
#include "TerminalEmulator/Engine/WindowFunctions.h"

namespace orvane {

namespace {

using EditFunctions::Erasing;
using ModeFunctions::Switch;
using Parameters = const ParserParameters&;
using Handler = void (*)(TerminalState& state, Parameters parameters);

struct Row {
    CsiFunction function = 0;
    Handler handler = nullptr;
};

/// DECSCUSR: 0 is the blinking block, as 1 is.
void setCursorStyle(TerminalState& state, Parameters parameters) {
    const std::int32_t style = std::max(parameters.values[0], 1) - 1;
    if (style > static_cast<std::int32_t>(CursorStyle::steadyBar)) return;
    state.cursorStyle = static_cast<CursorStyle>(style);
    state.modes.cursorBlink = style % 2 == 0;
    state.delegate.cursorStyleChanged(state.cursorStyle);
}

/// DECSCA.
void selectCharacterProtection(TerminalState& state, Parameters parameters) {
    if (parameters.values[0] > 2) return;
    const bool isProtected = parameters.values[0] == 1;
    if (isProtected) state.protectedMode = TerminalState::ProtectedMode::dec;
    state.buffer->pen.setIsProtected(isProtected);
}

constexpr auto rows = std::to_array<Row>({
    {csiFunction('A'), CursorFunctions::up},
    {csiFunction('B'), CursorFunctions::down},
    {csiFunction('C'), CursorFunctions::forward},
    {csiFunction('D'), [](TerminalState& state, Parameters p) { CursorFunctions::back(state, p.valueOr(0, 1)); }},
    {csiFunction('E'), CursorFunctions::nextLine},
    {csiFunction('F'), CursorFunctions::previousLine},
    {csiFunction('G'), CursorFunctions::toColumn},
    {csiFunction('H'), CursorFunctions::toPosition},
    {csiFunction('I'), [](TerminalState& state, Parameters p) { CursorFunctions::tabForward(state, p.valueOr(0, 1)); }},
    {csiFunction('Z'), [](TerminalState& state, Parameters p) { CursorFunctions::tabBack(state, p.valueOr(0, 1)); }},
    {csiFunction('`'), CursorFunctions::toColumn},
    {csiFunction('a'), CursorFunctions::columnsOn},
    {csiFunction('d'), CursorFunctions::toRow},
    {csiFunction('e'), CursorFunctions::rowsOn},
    {csiFunction('f'), CursorFunctions::toPosition},
    {csiFunction('g'), CursorFunctions::clearTabs},
    {csiFunction('r'), CursorFunctions::setRegion},
    {csiFunction('s'), CursorFunctions::setMarginsOrSave},
    {csiFunction('u'), [](TerminalState& state, Parameters /*p*/) { state.restoreCursor(); }},
    {csiFunction('?', 0, 'W'), CursorFunctions::setTabsEveryEight},

    {csiFunction('@'), EditFunctions::insertCharacters},
    {csiFunction('J'),
     [](TerminalState& state, Parameters p) { EditFunctions::eraseInDisplay(state, p, Erasing::plain); }},
    {csiFunction('K'),
     [](TerminalState& state, Parameters p) { EditFunctions::eraseInLine(state, p, Erasing::plain); }},
    {csiFunction('?', 0, 'J'),
     [](TerminalState& state, Parameters p) { EditFunctions::eraseInDisplay(state, p, Erasing::selective); }},
    {csiFunction('?', 0, 'K'),
     [](TerminalState& state, Parameters p) { EditFunctions::eraseInLine(state, p, Erasing::selective); }},
    {csiFunction('L'), EditFunctions::insertLines},
    {csiFunction('M'), EditFunctions::deleteLines},
    {csiFunction('P'), EditFunctions::deleteCharacters},
    {csiFunction('S'), EditFunctions::scrollUp},
    {csiFunction('T'), EditFunctions::scrollDown},
    {csiFunction('^'), EditFunctions::scrollDown},
    {csiFunction('X'), EditFunctions::eraseCharacters},
    {csiFunction(0, ' ', '@'), EditFunctions::shiftLeft},
    {csiFunction(0, ' ', 'A'), EditFunctions::shiftRight},
    {csiFunction(0, '\'', '}'), EditFunctions::insertColumns},
    {csiFunction(0, '\'', '~'), EditFunctions::deleteColumns},

    {csiFunction(0, '$', 'v'), RectangleFunctions::copy},
    {csiFunction(0, '$', 'x'), RectangleFunctions::fill},
    {csiFunction(0, '$', 'z'), RectangleFunctions::erase},
    {csiFunction(0, '$', '{'), RectangleFunctions::eraseUnprotected},
    {csiFunction(0, '$', 'r'), RectangleFunctions::changeAttributes},
    {csiFunction(0, '$', 't'), RectangleFunctions::reverseAttributes},
    {csiFunction(0, '*', 'x'), RectangleFunctions::selectExtent},

    {csiFunction('h'), [](TerminalState& state, Parameters p) { ModeFunctions::setAnsi(state, p, Switch::on); }},
    {csiFunction('l'), [](TerminalState& state, Parameters p) { ModeFunctions::setAnsi(state, p, Switch::off); }},
    {csiFunction('?', 0, 'h'),
     [](TerminalState& state, Parameters p) { ModeFunctions::setPrivate(state, p, Switch::on); }},
    {csiFunction('?', 0, 'l'),
     [](TerminalState& state, Parameters p) { ModeFunctions::setPrivate(state, p, Switch::off); }},
    {csiFunction('?', 0, 's'), ModeFunctions::savePrivate},
    {csiFunction('?', 0, 'r'), ModeFunctions::restorePrivate},
    {csiFunction(0, '$', 'p'), ModeFunctions::reportAnsi},
    {csiFunction('?', '$', 'p'), ModeFunctions::reportPrivate},
    {csiFunction(0, '"', 'p'), ReportFunctions::selectConformance},

    {csiFunction('>', 0, 'u'), KeyboardFunctions::push},
    {csiFunction('<', 0, 'u'), KeyboardFunctions::pop},
    {csiFunction('=', 0, 'u'), KeyboardFunctions::set},
    {csiFunction('?', 0, 'u'), KeyboardFunctions::report},
    {csiFunction('>', 0, 'm'), KeyboardFunctions::setModifiers},
    {csiFunction('>', 0, 'n'), KeyboardFunctions::disableModifiers},
    {csiFunction('?', 0, 'm'), KeyboardFunctions::reportModifiers},

    {csiFunction('c'), ReportFunctions::primaryAttributes},
    {csiFunction('>', 0, 'c'), ReportFunctions::secondaryAttributes},
    {csiFunction('=', 0, 'c'), ReportFunctions::tertiaryAttributes},
    {csiFunction('>', 0, 'q'), ReportFunctions::version},
    {csiFunction('n'), ReportFunctions::deviceStatus},
    {csiFunction('?', 0, 'n'), ReportFunctions::privateDeviceStatus},
    {csiFunction('x'), ReportFunctions::terminalParameters},
    {csiFunction('?', 0, 'S'), ReportFunctions::graphicsAttribute},
    {csiFunction(0, '"', 'v'), ReportFunctions::displayedExtent},
    {csiFunction(0, '&', 'u'), ReportFunctions::preferredSupplemental},
    {csiFunction(0, '*', 'y'), ChecksumFunctions::report},
    {csiFunction(0, '#', 'y'), ChecksumFunctions::selectExtension},
    {csiFunction(0, '$', 'w'), reportPresentation},

    {csiFunction('t'), WindowFunctions::manipulate},
    {csiFunction(0, '$', '|'), WindowFunctions::selectColumns},
    {csiFunction(0, '*', '|'), WindowFunctions::selectLines},
    {csiFunction('>', 0, 't'), TitleFunctions::setModes},
    {csiFunction('>', 0, 'T'), TitleFunctions::resetModes},

    {csiFunction('m'), selectGraphicRendition},
    {csiFunction(0, ' ', 'q'), setCursorStyle},
    {csiFunction(0, '"', 'q'), selectCharacterProtection},
    {csiFunction(0, '!', 'p'), [](TerminalState& state, Parameters /*p*/) { state.softReset(); }},
});

constexpr std::size_t finals = 0x40;

constexpr CsiFunction finalOf(CsiFunction function) {
    return (function & 0xFF) - finals;
}

/// The functions of one prefix without intermediates, by their final byte: nearly all that programs send.
template <char prefix>
constexpr auto byFinal = [] {
    std::array<Handler, finals> handlers{};
    for (const Row& row : rows) {
        if (row.function >> 8 == csiFunction(prefix, 0, 0) >> 8) handlers[finalOf(row.function)] = row.handler;
    }
    return handlers;
}();

Handler handlerOf(CsiFunction function) {
    if (function == 0) return nullptr;
    if (function >> 8 == 0) return byFinal<'\0'>[finalOf(function)];
    if (function >> 8 == csiFunction('?', 0, 0) >> 8) return byFinal<'?'>[finalOf(function)];
    const auto* const row = std::ranges::find(rows, function, &Row::function);
    return row == rows.end() ? nullptr : row->handler;
}

}  // namespace

bool csiDispatch(TerminalState& state, const CsiArguments& arguments) {
    const Handler handler = handlerOf(arguments.function);
    if (handler == nullptr) return false;
    handler(state, arguments.parameters);
    return true;
}

}  // namespace orvane
