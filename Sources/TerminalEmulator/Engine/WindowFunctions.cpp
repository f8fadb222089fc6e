#include "TerminalEmulator/Engine/WindowFunctions.h"

#include <fmt/format.h>

#include <algorithm>
#include <optional>
#include <span>

#include "TerminalEmulator/Engine/TitleFunctions.h"

namespace orvane::WindowFunctions {
namespace {

using Command = WindowManipulationCommand;
using Action = Command::Action;
using Report = Command::Report;
using TitleFunctions::Title;

constexpr int fewestLines = 24;  // from here on a first parameter is DECSLPP

template <typename Value>
void ask(TerminalState& state, const Value& value) {
    state.delegate.windowCommand(Command{value});
}

/// The action that a second parameter chooses.
void act(TerminalState& state, const ParserParameters& parameters, std::span<const Action> actions) {
    const auto choice = static_cast<std::size_t>(parameters.valueOr(1, 0));
    if (choice < actions.size()) ask(state, actions[choice]);
}

/// -1, which leaves the measure as it is, when it was left out at the end.
int pixels(const ParserParameters& parameters, std::size_t index) {
    return index < parameters.size() ? parameters.values[index] : -1;
}

int cells(const ParserParameters& parameters, std::size_t index, int present) {
    return std::min(parameters.valueOr(index, present), Buffer::maximumSize);
}

/// What the terminal answers by itself; nothing for what it does not know.
std::optional<std::string> answer(TerminalState& state, Report report) {
    const auto cell = state.delegate.cellSizeInPixels();
    const auto area = [&](int kind) -> std::optional<std::string> {
        if (!cell) return std::nullopt;
        return fmt::format("{};{};{}t", kind, cell->height * state.rows(), cell->width * state.cols());
    };
    switch (report) {
        case Report::terminalState:
            return "1t";
        case Report::terminalPosition:
        case Report::textAreaPosition:
            return "3;0;0t";
        case Report::textAreaPixelDimension:
        case Report::terminalWindowPixelDimension:
            return area(4);
        case Report::sizeOfScreenInPixels:
            return area(5);
        case Report::cellSizeInPixels:
            return cell ? std::optional(fmt::format("6;{};{}t", cell->height, cell->width)) : std::nullopt;
        case Report::textAreaCharacters:
            return fmt::format("8;{};{}t", state.rows(), state.cols());
        case Report::screenSizeCharacters:
            return fmt::format("9;{};{}t", state.rows(), state.cols());
        case Report::iconLabel:
        case Report::windowTitle:
            break;
    }
    return std::nullopt;
}

void tell(TerminalState& state, Report report) {
    if (const auto given = state.delegate.windowCommand(Command{report})) {
        state.send(*given);
    } else if (const auto own = answer(state, report)) {
        state.sendCsi(*own);
    }
}

/// A title may hold what another program has set. One that is not trusted is told an empty one, so that it does not
/// wait.
void tellTitle(TerminalState& state, Report report) {
    const Title title = report == Report::windowTitle ? Title::window : Title::icon;
    const std::string letter = title == Title::window ? "l" : "L";
    if (!state.delegate.isProcessTrusted()) {
        state.sendOsc(letter, StringEnd::stringTerminator);
    } else if (const auto given = state.delegate.windowCommand(Command{report})) {
        state.send(*given);
    } else {
        state.sendOsc(letter + TitleFunctions::told(state.titles, title), StringEnd::stringTerminator);
    }
}

/// The second parameter: 0 both titles, 1 the icon's, 2 the window's.
void forTitles(TerminalState& state, const ParserParameters& parameters, void (*change)(TerminalState&, Title)) {
    const int which = parameters.valueOr(1, 0);
    if (which == 0 || which == 1) change(state, Title::icon);
    if (which == 0 || which == 2) change(state, Title::window);
}

constexpr Action restoreOrMaximize[] = {Action::restoreMaximizedWindow, Action::maximizeWindow,
                                        Action::maximizeWindowVertically, Action::maximizeWindowHorizontally};
constexpr Action fullScreen[] = {Action::undoFullScreen, Action::switchToFullScreen, Action::toggleFullScreen};

}  // namespace

void manipulate(TerminalState& state, const ParserParameters& parameters) {
    const bool isSecond = parameters.valueOr(1, 0) == 2;
    switch (parameters.values[0]) {
        case 1:
            return ask(state, Action::deiconifyWindow);
        case 2:
            return ask(state, Action::iconifyWindow);
        case 3:
            return ask(state, Command::MoveWindowTo{parameters.valueOr(1, 0), parameters.valueOr(2, 0)});
        case 4:
            return ask(state, Command::ResizeWindowTo{.width = pixels(parameters, 2), .height = pixels(parameters, 1)});
        case 5:
            return ask(state, Action::bringToFront);
        case 6:
            return ask(state, Action::sendToBack);
        case 7:
            return ask(state, Action::refreshWindow);
        case 8:
            // The parser does not tell 0, which asks for all there is, from what was left out; a pane has all there is.
            return ask(state, Command::ResizeTerminal{.cols = cells(parameters, 2, state.cols()),
                                                      .rows = cells(parameters, 1, state.rows())});
        case 9:
            return act(state, parameters, restoreOrMaximize);
        case 10:
            return act(state, parameters, fullScreen);
        case 11:
            return tell(state, Report::terminalState);
        case 13:
            return tell(state, isSecond ? Report::textAreaPosition : Report::terminalPosition);
        case 14:
            return tell(state, isSecond ? Report::terminalWindowPixelDimension : Report::textAreaPixelDimension);
        case 15:
            return tell(state, Report::sizeOfScreenInPixels);
        case 16:
            return tell(state, Report::cellSizeInPixels);
        case 18:
            return tell(state, Report::textAreaCharacters);
        case 19:
            return tell(state, Report::screenSizeCharacters);
        case 20:
            return tellTitle(state, Report::iconLabel);
        case 21:
            return tellTitle(state, Report::windowTitle);
        case 22:
            return forTitles(state, parameters, TitleFunctions::push);
        case 23:
            return forTitles(state, parameters, TitleFunctions::pop);
        default:
            break;
    }
    if (parameters.values[0] >= fewestLines) ask(state, Command::ResizeToLines{cells(parameters, 0, fewestLines)});
}

void selectColumns(TerminalState& state, const ParserParameters& parameters) {
    const int cols = parameters.valueOr(0, 80);
    if (cols == 80 || cols == 132) ask(state, Command::ResizeTerminal{.cols = cols, .rows = state.rows()});
}

void selectLines(TerminalState& state, const ParserParameters& parameters) {
    ask(state, Command::ResizeTerminal{.cols = state.cols(), .rows = cells(parameters, 0, state.rows())});
}

}  // namespace orvane::WindowFunctions
