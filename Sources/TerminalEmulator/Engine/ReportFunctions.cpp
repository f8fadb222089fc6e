#include "TerminalEmulator/Engine/ReportFunctions.h"

#include <fmt/format.h>

#include <string_view>

#include "TerminalEmulator/Engine/ColorFunctions.h"

namespace orvane::ReportFunctions {
namespace {

/// How programs that know a terminal by its attributes see one of this name. Names are matched by their beginning; the
/// first row is also for all others.
struct Identity {
    std::string_view termName;
    std::string_view primary;
    std::string_view sixelPrimary;
    std::string_view secondary;
};

// 65 a VT500, 1 with 132 columns, 4 sixel graphics, 6 selective erase, 9 national character sets, 15 technical
// characters, 21 horizontal scrolling, 22 colour, 28 rectangular editing, 52 clipboard.
constexpr Identity identities[] = {
    {"xterm", "?65;1;6;9;15;21;22;28;52c", "?65;1;4;6;9;15;21;22;28;52c", ">0;276;0c"},
    {"rxvt-unicode", "?1;2c", "?1;2;4c", ">85;95;0c"},
    {"screen", "?1;2c", "?1;2;4c", ">83;40003;0c"},
    {"linux", "?6c", "?6;4c", ">0;10;0c"},
};

const Identity& identity(const TerminalState& state) {
    for (const Identity& row : identities) {
        if (state.options.termName.starts_with(row.termName)) return row;
    }
    return identities[0];
}

/// From 1, as all reports have it.
std::string cursorPlace(const TerminalState& state) {
    const auto place = state.reportedCursor();
    return fmt::format("{};{}", place.row + 1, place.col + 1);
}

std::string_view colorScheme(const TerminalState& state) {
    // Rec. 601 weights, which are enough to tell dark from light.
    const auto light = [](const TerminalColor& color) {
        return color.red * 299L + color.green * 587L + color.blue * 114L;
    };
    const bool isDark = light(ColorFunctions::background(state)) <= light(ColorFunctions::foreground(state));
    return isDark ? "?997;1n" : "?997;2n";
}

}  // namespace

void sendPrimaryAttributes(TerminalState& state) {
    const Identity& row = identity(state);
    state.sendCsi(state.options.enableSixelReported ? row.sixelPrimary : row.primary);
}

void primaryAttributes(TerminalState& state, const ParserParameters& parameters) {
    if (parameters.values[0] == 0) sendPrimaryAttributes(state);
}

void secondaryAttributes(TerminalState& state, const ParserParameters& parameters) {
    if (parameters.values[0] == 0) state.sendCsi(identity(state).secondary);
}

void tertiaryAttributes(TerminalState& state, const ParserParameters& parameters) {
    if (parameters.values[0] == 0) state.sendDcs("!|00000000");
}

void version(TerminalState& state, const ParserParameters& parameters) {
    if (parameters.values[0] == 0) state.sendDcs(">|Orvane(" ORVANE_VERSION ")");
}

void deviceStatus(TerminalState& state, const ParserParameters& parameters) {
    if (parameters.values[0] == 5) state.sendCsi("0n");
    if (parameters.values[0] == 6) state.sendCsi(cursorPlace(state) + "R");
}

void privateDeviceStatus(TerminalState& state, const ParserParameters& parameters) {
    switch (parameters.values[0]) {
        case 6:  // DECXCPR, on page 1
            return state.sendCsi("?" + cursorPlace(state) + ";1R");
        case 15:  // printer: ready
            return state.sendCsi("?10n");
        case 25:  // user-defined keys: locked
            return state.sendCsi("?21n");
        case 26:  // keyboard: North American, ready, LK201
            return state.sendCsi("?27;1;0;0n");
        case 53:  // locator: available
        case 55:
            return state.sendCsi("?53n");
        case 56:  // locator: a mouse
            return state.sendCsi("?57;1n");
        case 62:  // DECMSR: no room for macros
            return state.sendCsi("0*{");
        case 63:  // DECCKSR: the checksum of no macros
            return state.sendDcs(fmt::format("{}!~0000", parameters.valueOr(1, 0)));
        case 75:  // data integrity: no errors
            return state.sendCsi("?70n");
        case 85:  // no multiple sessions
            return state.sendCsi("?83n");
        case 996:  // colour scheme
            return state.sendCsi(colorScheme(state));
        default:
            return;
    }
}

/// No parity, 8 bits, 38.4 kbaud both ways.
void terminalParameters(TerminalState& state, const ParserParameters& parameters) {
    if (parameters.values[0] <= 1) state.sendCsi(fmt::format("{};1;1;128;128;1;0x", parameters.values[0] + 2));
}

/// There are no graphics: 1 is an error in the item, 2 in the action, 3 a failure.
void graphicsAttribute(TerminalState& state, const ParserParameters& parameters) {
    const std::int32_t item = parameters.values[0];
    const std::int32_t action = parameters.valueOr(1, 0);
    int status = 3;
    if (action < 1 || action > 4) status = 2;
    if (item < 1 || item > 3) status = 1;
    state.sendCsi(fmt::format("?{};{};0S", item, status));
}

/// All of page 1 is shown, from its first column and row.
void displayedExtent(TerminalState& state, const ParserParameters& /*parameters*/) {
    state.sendCsi(fmt::format("{};{};1;1;1\"w", state.rows(), state.cols()));
}

/// DEC Supplemental, a set of 94.
void preferredSupplemental(TerminalState& state, const ParserParameters& /*parameters*/) {
    state.sendDcs("0!u%5");
}

/// Levels 61 to 65, a change of which resets all else, as on the hardware; the second parameter asks for answers with 7
/// (1) or 8 (0, 2) bits and counts from level 2 on.
void selectConformance(TerminalState& state, const ParserParameters& parameters) {
    const std::int32_t level = parameters.values[0] - 60;
    if (level < 1 || level > 5) return;
    state.reset();
    state.conformance = static_cast<TerminalConformance>(level);
    const std::int32_t bits = parameters.size() > 1 ? parameters.values[1] : 1;
    state.send8bit = level > 1 && (bits == 0 || bits == 2);
}

}  // namespace orvane::ReportFunctions
