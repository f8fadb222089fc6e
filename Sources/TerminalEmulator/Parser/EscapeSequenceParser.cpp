#include "TerminalEmulator/Parser/EscapeSequenceParser.h"

#include <algorithm>
#include <limits>
#include <utility>

#include "TerminalEmulator/Parser/TextScan.h"
#include "TerminalEmulator/Parser/TransitionTable.h"

namespace orvane {

namespace {

constexpr std::uint8_t bell = 0x07;
constexpr std::uint8_t cancel = 0x18;
constexpr std::uint8_t substitute = 0x1A;
constexpr std::uint8_t escapeCode = 0x1B;
constexpr std::uint8_t firstAboveC1 = 0xA0;

/// Numbers stay here once they are so great, and count as 0. Another digit still fits 64 bits.
constexpr std::int64_t numberLimit = 922337203685477571;

/// What an idle parser may keep for the next string.
constexpr std::size_t keptCapacity = 64 * 1024;

bool isDigit(std::uint8_t code) {
    return code >= '0' && code <= '9';
}

bool isFinal(std::uint8_t code) {
    return code >= 0x40 && code <= 0x7E;
}

std::int64_t withDigit(std::int64_t number, std::uint8_t digit) {
    return std::min(number * 10 + (digit - '0'), numberLimit);
}

std::int32_t finished(std::int64_t number) {
    if (number == numberLimit) return 0;
    return static_cast<std::int32_t>(std::min<std::int64_t>(number, std::numeric_limits<std::int32_t>::max()));
}

std::string_view asText(const std::uint8_t* bytes, std::size_t size) {
    return {reinterpret_cast<const char*>(bytes), size};
}

bool isDcsData(std::uint8_t code) {
    return code >= firstAboveC1 || transitionTable.at(ParserState::dcsPassthrough, code).action == ParserAction::dcsPut;
}

}  // namespace

void EscapeSequenceParser::parse(std::string_view data) {
    const auto* begin = reinterpret_cast<const std::uint8_t*>(data.data());
    Input input{.begin = begin, .at = begin, .end = begin + data.size()};
    aborted_ = false;
    while (input.at != input.end && !aborted_) {
        switch (currentState_) {
            using enum ParserState;
            case ground:
                parseText(input);
                break;
            case csiEntry:
            case csiParam:
                parseCsi(input);
                break;
            case oscString:
            case apcString:
                parseString(input);
                break;
            case sosPmApcString:
                parseIgnoredString(input);
                break;
            case dcsPassthrough:
                parseDcsData(input);
                break;
            case escape:
            case escapeIntermediate:
            case csiIntermediate:
            case csiIgnore:
            case dcsEntry:
            case dcsParam:
            case dcsIgnore:
            case dcsIntermediate:
                step(input);
                break;
        }
    }
}

void EscapeSequenceParser::reset() {
    currentState_ = ParserState::ground;
    activeDcsHandler_ = nullptr;
    clear();
}

/// The ground state without its row of the table: text in runs, then one control code.
void EscapeSequenceParser::parseText(Input& input) {
    if (*input.at >= 0x20) {
        const std::size_t plainCount = TextScan::plainLength(input.at, input.left());
        std::size_t length = plainCount;
        if (length < input.left() && input.at[length] >= 0x20) {
            length += TextScan::textLength(input.at + length, input.left() - length);
        }
        const std::string_view text = asText(input.at, length);
        input.at += length;
        textSinceReset_ = true;
        handler_.print(text, plainCount);
        if (input.at == input.end) return;
    }
    const std::uint8_t code = *input.at++;
    if (code != escapeCode) {
        handler_.execute(code);
        return;
    }
    clear();
    if (input.at == input.end || *input.at != '[') {
        currentState_ = ParserState::escape;
        return;
    }
    // Most escapes begin a control sequence; entering it would only clear once more.
    ++input.at;
    currentState_ = ParserState::csiEntry;
    if (input.at != input.end) parseCsi(input);
}

/// Digits, separators and the final byte without the table, and one byte through it where they end.
void EscapeSequenceParser::parseCsi(Input& input) {
    for (; input.at != input.end; ++input.at) {
        const std::uint8_t code = *input.at;
        if (isDigit(code)) {
            value_ = withDigit(value_, code);
        } else if (code == ';' || (code == ':' && currentState_ == ParserState::csiParam)) {
            endParameter(static_cast<char>(code));
        } else {
            break;
        }
        currentState_ = ParserState::csiParam;
    }
    if (input.at == input.end) return;
    if (!isFinal(*input.at)) {
        step(input);
        return;
    }
    currentState_ = ParserState::ground;
    dispatchCsi(static_cast<char>(*input.at++));
}

/// Until its first byte of text a string obeys the table, so that a terminator in 8 bits ends an empty one. From there
/// on it is UTF-8, where 0x9C may be a part of any character.
void EscapeSequenceParser::parseString(Input& input) {
    const auto isData = [this](std::uint8_t code) {
        return transitionTable.at(currentState_, code).action == ParserAction::oscPut;
    };
    while (input.at != input.end) {
        if (!string_.empty() || isData(*input.at)) {
            const std::size_t length = TextScan::textLength(input.at, input.left());
            appendToString(asText(input.at, length));
            input.at += length;
            if (input.at == input.end) return;
        }
        const std::uint8_t code = *input.at;
        if (string_.empty() || code == bell || code == cancel || code == escapeCode) {
            step(input);
            return;
        }
        ++input.at;
    }
}

void EscapeSequenceParser::parseIgnoredString(Input& input) {
    input.at += TextScan::textLength(input.at, input.left());
    if (input.at != input.end) step(input);
}

void EscapeSequenceParser::parseDcsData(Input& input) {
    const auto* const end = std::find_if_not(input.at, input.end, isDcsData);
    const std::size_t length =
        activeDcsHandler_ ? std::min(static_cast<std::size_t>(end - input.at), dcsBytesLeft_) : 0;
    const std::string_view data = asText(input.at, length);
    input.at = end;
    dcsBytesLeft_ -= length;
    if (!data.empty()) activeDcsHandler_->put(data);
    // The handler may have reset the parser.
    if (input.at != input.end && currentState_ == ParserState::dcsPassthrough) step(input);
}

/// One byte through the table. The next state is entered before the action, so that a handler which resets the parser
/// has the last word; a string's end alone comes after, for the backslash of its terminator belongs to it.
void EscapeSequenceParser::step(Input& input) {
    const ParserState state = currentState_;
    const auto [action, nextState] = transitionTable.at(state, *input.at);
    currentState_ = nextState;
    perform(action, state, input);
    if (!aborted_) ++input.at;
}

void EscapeSequenceParser::perform(ParserAction action, ParserState state, const Input& input) {
    const std::uint8_t code = *input.at;
    switch (action) {
        using enum ParserAction;
        case error:
            reportError(state, input);
            break;
        case execute:
            handler_.execute(code);
            break;
        case oscStart:
            string_.clear();
            break;
        case oscEnd:
            endString(state, code);
            break;
        case csiDispatch:
            dispatchCsi(static_cast<char>(code));
            break;
        case param:
            if (isDigit(code)) {
                value_ = withDigit(value_, code);
            } else {
                endParameter(static_cast<char>(code));
            }
            break;
        case collect:
            this->collect(code);
            break;
        case escDispatch:
            handler_.escDispatch(static_cast<char>(code), collected());
            break;
        case clear:
            this->clear();
            break;
        case dcsHook:
            hookDcs(static_cast<char>(code));
            break;
        case dcsUnhook:
            unhookDcs(code);
            break;
        case ignore:
        // Text and the data of strings are taken in runs and never come here.
        case print:
        case oscPut:
        case dcsPut:
            break;
    }
}

void EscapeSequenceParser::clear() {
    string_.clear();
    collectCount_ = 0;
    startParameters();
    resetPrintState();
}

void EscapeSequenceParser::resetPrintState() {
    if (!std::exchange(textSinceReset_, false)) return;
    handler_.printStateReset();
}

void EscapeSequenceParser::startParameters() {
    parameterCount_ = 1;
    value_ = 0;
}

void EscapeSequenceParser::storeParameter() {
    if (parameterCount_ <= parameterLimit) values_[parameterCount_ - 1] = finished(value_);
}

void EscapeSequenceParser::endParameter(char separator) {
    storeParameter();
    value_ = 0;
    if (parameterCount_ > parameterLimit) return;
    separators_[parameterCount_ - 1] = separator;
    ++parameterCount_;
}

void EscapeSequenceParser::collect(std::uint8_t code) {
    if (collectCount_ < collectLimit) collect_[collectCount_++] = static_cast<char>(code);
}

ParserParameters EscapeSequenceParser::parameters() const {
    const std::size_t count = std::min(parameterCount_, parameterLimit);
    return {.values = {values_.data(), count}, .separators = {separators_.data(), count - 1}};
}

void EscapeSequenceParser::dispatchCsi(char final) {
    storeParameter();
    std::string_view intermediates = collected();
    char prefix = 0;
    if (!intermediates.empty() && intermediates.front() >= '<') {
        prefix = intermediates.front();
        intermediates.remove_prefix(1);
    }
    const char intermediate = intermediates.empty() ? '\0' : intermediates.front();
    handler_.csiDispatch({.function = intermediates.size() > 1 ? 0 : csiFunction(prefix, intermediate, final),
                          .parameters = parameters(),
                          .collect = collected(),
                          .final = final});
}

void EscapeSequenceParser::appendToString(std::string_view bytes) {
    string_.append(bytes.substr(0, stringLimit - string_.size()));
}

void EscapeSequenceParser::endString(ParserState state, std::uint8_t code) {
    if (!string_.empty() && code != cancel && code != substitute) {
        // Out of the parser, so that a handler that resets it does not clear what it looks at.
        std::string text = std::exchange(string_, {});
        dispatchString(state, text, code == bell ? StringEnd::bell : StringEnd::stringTerminator);
        if (text.capacity() <= keptCapacity) string_ = std::move(text);
    }
    clear();
    currentState_ = code == escapeCode ? ParserState::escape : ParserState::ground;
}

void EscapeSequenceParser::dispatchString(ParserState state, std::string_view text, StringEnd end) {
    if (state == ParserState::apcString) {
        handler_.apcDispatch(text.front(), text.substr(1), end);
        return;
    }
    const std::size_t semicolon = text.find(';');
    const std::string_view digits = text.substr(0, semicolon);
    std::int64_t number = 0;
    for (const char digit : digits) {
        const auto code = static_cast<std::uint8_t>(digit);
        if (!isDigit(code)) break;
        number = withDigit(number, code);
    }
    const bool hasPayload = semicolon != std::string_view::npos;
    handler_.oscDispatch(finished(number), hasPayload ? text.substr(semicolon + 1) : std::string_view(), end);
}

void EscapeSequenceParser::hookDcs(char final) {
    storeParameter();
    dcsBytesLeft_ = stringLimit;
    activeDcsHandler_ = handler_.dcsHandler(collected(), parameters(), final);
    if (activeDcsHandler_) activeDcsHandler_->hook(collected(), parameters(), final);
}

void EscapeSequenceParser::unhookDcs(std::uint8_t code) {
    if (DcsHandler* handler = std::exchange(activeDcsHandler_, nullptr)) handler->unhook();
    clear();
    currentState_ = code == escapeCode ? ParserState::escape : ParserState::ground;
}

void EscapeSequenceParser::reportError(ParserState state, const Input& input) {
    const std::uint8_t code = *input.at;
    const bool isIgnoring = state == ParserState::csiIgnore || state == ParserState::dcsIgnore;
    if (isIgnoring && code >= firstAboveC1) {
        currentState_ = state;
        return;
    }
    storeParameter();
    const ParsingState result = handler_.errorHandler({.position = static_cast<std::size_t>(input.at - input.begin),
                                                       .code = code,
                                                       .currentState = state,
                                                       .collect = collected(),
                                                       .parameters = parameters()});
    aborted_ = result.abort;
    if (aborted_) currentState_ = state;
}

}  // namespace orvane
