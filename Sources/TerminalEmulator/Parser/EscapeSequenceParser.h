#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "TerminalEmulator/Parser/ParserAction.h"
#include "TerminalEmulator/Parser/ParserHandler.h"
#include "TerminalEmulator/Parser/ParserState.h"

namespace orvane {

/// Turns the bytes of a child process into calls on a `ParserHandler`, after the DEC state diagram. It keeps its whole
/// state between slices: any cut of a stream makes the same calls, but that text and device control data come in more
/// pieces. It decodes no UTF-8: from 0x80 on, bytes are material of text and of strings, except where a sequence has
/// begun and is not over.
///
/// It needs some 20 KiB and at most `stringLimit` for a string, whatever it is fed.
class EscapeSequenceParser {
 public:
    /// The most bytes that are kept of an OSC, APC or DCS string. The rest is swallowed, and the string is dispatched.
    static constexpr std::size_t stringLimit = std::size_t{1} << 20;
    /// The most parameters that are kept of a sequence. The rest is swallowed, and the sequence is dispatched.
    static constexpr std::size_t parameterLimit = 4096;
    /// The most intermediates that are kept, with the prefix. No function has more than two, so a longer name, cut to
    /// this, is no function's name.
    static constexpr std::size_t collectLimit = 8;

    /// The handler must outlive the parser.
    explicit EscapeSequenceParser(ParserHandler& handler) : handler_(handler) {}

    EscapeSequenceParser(const EscapeSequenceParser&) = delete;
    EscapeSequenceParser& operator=(const EscapeSequenceParser&) = delete;

    /// Never fails. Not to be called from the handler.
    void parse(std::string_view data);

    /// Forgets what has begun; a device control string ends without `unhook`.
    void reset();

    [[nodiscard]] ParserState currentState() const { return currentState_; }

 private:
    /// The slice that is being parsed.
    struct Input {
        const std::uint8_t* begin;
        const std::uint8_t* at;
        const std::uint8_t* end;

        [[nodiscard]] std::size_t left() const { return static_cast<std::size_t>(end - at); }
    };

    void parseText(Input& input);
    void parseCsi(Input& input);
    void parseString(Input& input);
    void parseIgnoredString(Input& input);
    void parseDcsData(Input& input);
    void step(Input& input);
    void perform(ParserAction action, ParserState state, const Input& input);

    void clear();
    void resetPrintState();
    void startParameters();
    void storeParameter();
    void endParameter(char separator);
    void collect(std::uint8_t code);
    void appendToString(std::string_view bytes);
    void dispatchCsi(char final);
    void endString(ParserState state, std::uint8_t code);
    void dispatchString(ParserState state, std::string_view text, StringEnd end);
    void hookDcs(char final);
    void unhookDcs(std::uint8_t code);
    void reportError(ParserState state, const Input& input);

    [[nodiscard]] std::string_view collected() const { return {collect_.data(), collectCount_}; }
    [[nodiscard]] ParserParameters parameters() const;

    ParserHandler& handler_;
    /// Who receives the string in `dcsPassthrough`; without meaning in other states.
    DcsHandler* activeDcsHandler_ = nullptr;
    ParserState currentState_ = ParserState::ground;
    bool textSinceReset_ = false;
    bool aborted_ = false;

    std::uint8_t collectCount_ = 0;
    std::array<char, collectLimit> collect_{};

    /// The parameter that is being read, which `values_` lacks until it ends.
    std::int64_t value_ = 0;
    /// One more than its limit says that the parameter being read is swallowed.
    std::size_t parameterCount_ = 1;
    std::size_t dcsBytesLeft_ = 0;
    /// Of the OSC or APC string. Whether it is empty also tells whether the string's first byte of text was met, from
    /// which on all but BEL, CAN and ESC is data.
    std::string string_;
    std::array<std::int32_t, parameterLimit> values_{};
    std::array<char, parameterLimit> separators_{};
};

}  // namespace orvane
