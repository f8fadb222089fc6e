#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

#include "TerminalEmulator/Parser/ParserState.h"
#include "TerminalEmulator/Parser/StringEnd.h"

namespace orvane {

/// The numeric parameters of a control sequence or a device control string. Looks into the parser: valid during the
/// call that hands it over, or until that call resets the parser.
struct ParserParameters {
    /// At least one; what was left out is 0. Never negative; 2^31 - 1 stands for all that is greater, and a number of
    /// 922337203685477571 or more is 0.
    std::span<const std::int32_t> values;
    /// ";" or ":", one between each two values: `separators[i]` stands behind `values[i]`.
    std::string_view separators;

    [[nodiscard]] std::size_t size() const { return values.size(); }

    /// The parameter, or `fallback` where it is 0, left out or not there.
    [[nodiscard]] std::int32_t valueOr(std::size_t index, std::int32_t fallback) const {
        return index < values.size() && values[index] != 0 ? values[index] : fallback;
    }

    /// Whether a colon joins the parameter to the one before it ("4:3").
    [[nodiscard]] bool isSubparameter(std::size_t index) const {
        return index > 0 && index <= separators.size() && separators[index - 1] == ':';
    }
};

/// The name of a control function: its private prefix (one of < = > ?, or 0), its intermediates and its final byte
/// together, as one number for a `switch`. `CSI > 4 m` shares nothing with `CSI 4 m`.
using CsiFunction = std::uint32_t;

/// The name of a function with at most one intermediate (0 for none), which is all that are in use.
constexpr CsiFunction csiFunction(char prefix, char intermediate, char final) {
    return static_cast<CsiFunction>(static_cast<unsigned char>(prefix)) << 16 |
           static_cast<CsiFunction>(static_cast<unsigned char>(intermediate)) << 8 | static_cast<unsigned char>(final);
}

constexpr CsiFunction csiFunction(char final) {
    return csiFunction(0, 0, final);
}

/// A control sequence that is whole. Valid as its `parameters` are.
struct CsiArguments {
    /// As `csiFunction` makes it; 0, which is no function, when there is more than one intermediate.
    CsiFunction function = 0;
    ParserParameters parameters;
    /// The prefix, if any, and the intermediates as they were received; at most the first 8 of them.
    std::string_view collect;
    char final = 0;
};

/// Where the parser stood when it met a byte that its state does not allow.
struct ParsingState {
    /// Of the byte, within the slice that is being parsed.
    std::size_t position = 0;
    std::uint8_t code = 0;
    ParserState currentState = ParserState::ground;
    /// Where the open run of text or of device control data begins in the slice; -1 for none, as it always is in the
    /// states that know errors.
    std::ptrdiff_t print = -1;
    std::ptrdiff_t dcs = -1;
    /// What strings hold so far: empty, as no state that knows errors has one.
    std::string_view osc;
    std::string_view apc;
    std::string_view collect;
    ParserParameters parameters;
    /// Set by the handler to leave the rest of the slice unread, from the byte on, with the state unchanged.
    bool abort = false;
};

/// Receives one device control string: `hook` once, `put` for each piece of data, `unhook` at its end. A string that is
/// cancelled (by CAN, SUB or a C1 control) ends without `unhook`, so `hook` must start afresh.
class DcsHandler {
 public:
    virtual ~DcsHandler() = default;

    /// `collect` as in `CsiArguments`.
    virtual void hook(std::string_view collect, const ParserParameters& parameters, char final) = 0;

    /// Together at most `EscapeSequenceParser::stringLimit` bytes; the rest of a longer string is swallowed.
    virtual void put(std::string_view data) = 0;

    virtual void unhook() = 0;
};

/// What a parser calls, once an event and never once a byte. The views are valid during the call. A handler may reset
/// the parser in a call; it may neither feed it nor destroy it.
class ParserHandler {
 public:
    virtual ~ParserHandler() = default;

    /// Text: bytes of 0x20 and up, never empty. The first `plainCount` bytes are printable ASCII (0x20 to 0x7E); from
    /// there on it is UTF-8 as it was received, which may be malformed and may hold DEL and encoded C1 controls. None
    /// of these prints: who decodes leaves them out. A character may be cut by the end of the text; it goes on in the
    /// next text if no other call comes between.
    virtual void print(std::string_view text, std::size_t plainCount) = 0;

    /// A C0 control, or a C1 control in a place where bytes are no UTF-8.
    virtual void execute(std::uint8_t code) = 0;

    virtual void csiDispatch(const CsiArguments& arguments) = 0;

    /// An escape sequence; `collect` as in `CsiArguments`.
    virtual void escDispatch(char final, std::string_view collect) = 0;

    /// An operating system command: its number (0 when it has none) and what follows the first semicolon.
    virtual void oscDispatch(std::int32_t code, std::string_view payload, StringEnd end) = 0;

    /// An application program command: its first byte and the rest.
    virtual void apcDispatch(char identifier, std::string_view payload, StringEnd end) = 0;

    /// Who receives the device control string of this name. It is not owned and must stay until the string ends or the
    /// parser is reset; with none, the string is swallowed.
    virtual DcsHandler* dcsHandler(std::string_view collect, const ParserParameters& parameters, char final) = 0;

    /// What text left open (a character that is not whole) is over: text was interrupted by an escape character, by
    /// the end of a string or by a reset. Called only where text was handed over since the last such call.
    virtual void printStateReset() = 0;

    /// A byte that its state does not allow; by default the parser skips it and goes on with text.
    virtual ParsingState errorHandler(const ParsingState& state) { return state; }
};

}  // namespace orvane
