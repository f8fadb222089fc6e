#include "OrvaneCore/Agents/Signals/TerminalOutputScanner.h"

namespace orvane {

namespace {

using State = TerminalOutputScanner::State;

constexpr unsigned char bellByte = 0x07;
constexpr unsigned char escapeByte = 0x1B;

/// After ESC: DCS, SOS, OSC, PM and APC begin a string, CSI a sequence (ECMA-48, 5.3 and 5.4).
State afterEscape(unsigned char byte, State otherwise) {
    switch (byte) {
        case 'P':
        case 'X':
        case ']':
        case '^':
        case '_':
            return State::string;
        case '[':
            return State::csi;
        default:
            return otherwise;
    }
}

State insideString(unsigned char byte) {
    if (byte == escapeByte) return State::stringEscape;
    return byte == bellByte ? State::normal : State::string;
}

State next(State state, unsigned char byte) {
    switch (state) {
        case State::normal:
            return byte == escapeByte ? State::escape : State::normal;
        case State::escape:
            return afterEscape(byte, byte >= 0x20 && byte <= 0x2F ? State::escape : State::normal);
        case State::csi:
            return byte >= 0x40 && byte <= 0x7E ? State::normal : State::csi;
        case State::string:
            return insideString(byte);
        case State::stringEscape:
            return afterEscape(byte, State::normal);
    }
    return State::normal;
}

bool isControl(unsigned char byte) {
    return byte < 0x20 || byte == 0x7F;
}

}  // namespace

TerminalOutputScanner::Result TerminalOutputScanner::scan(std::string_view bytes) {
    Result result;
    for (const char each : bytes) {
        const auto byte = static_cast<unsigned char>(each);
        if (state == State::normal && byte == bellByte) result.bell = true;
        if (state == State::normal && !isControl(byte)) result.printable = true;
        state = next(state, byte);
    }
    return result;
}

std::string TerminalOutputScanner::textOf(std::string_view bytes) {
    std::string text;
    State state = State::normal;
    for (const char each : bytes) {
        const auto byte = static_cast<unsigned char>(each);
        if (state == State::normal && !isControl(byte)) text += each;
        state = next(state, byte);
    }
    return text;
}

}  // namespace orvane
