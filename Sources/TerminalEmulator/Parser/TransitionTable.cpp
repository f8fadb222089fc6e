#include "TerminalEmulator/Parser/TransitionTable.h"

#include <initializer_list>

namespace orvane {

namespace {

using enum ParserAction;
using enum ParserState;

struct Range {
    unsigned first;
    unsigned last;
};

using Ranges = std::initializer_list<Range>;

/// C0 without CAN, SUB and ESC, which work alike in every state.
constexpr Ranges c0 = {{0x00, 0x17}, {0x19, 0x19}, {0x1C, 0x1F}};
constexpr Ranges c0WithoutBell = {{0x00, 0x06}, {0x08, 0x17}, {0x19, 0x19}, {0x1C, 0x1F}};
constexpr Ranges del = {{0x7F, 0x7F}};
constexpr Ranges printable = {{0x20, 0x7E}};
constexpr Ranges intermediate = {{0x20, 0x2F}};
constexpr Ranges digitOrSemicolon = {{0x30, 0x39}, {0x3B, 0x3B}};
constexpr Ranges colon = {{0x3A, 0x3A}};
constexpr Ranges privateMarker = {{0x3C, 0x3F}};
constexpr Ranges anyParameter = {{0x30, 0x3F}};
constexpr Ranges final = {{0x40, 0x7E}};

}  // namespace

class TransitionTable::Builder {
 public:
    constexpr explicit Builder(TransitionTable& table) : table_(table) {}

    constexpr void add(ParserState state, Ranges codes, ParserAction action, ParserState next) {
        for (const auto [first, last] : codes) {
            for (unsigned code = first; code <= last; ++code) {
                table_.entries_[indexOf(state, static_cast<std::uint8_t>(code))] =
                    static_cast<std::uint8_t>(static_cast<unsigned>(action) * 16 + static_cast<unsigned>(next));
            }
        }
    }

    constexpr void addDefaults(ParserState state) {
        add(state, {{0x00, lastColumn}}, error, ground);
        add(state, {{0x18, 0x18}, {0x1A, 0x1A}, {0x80, 0x8F}, {0x91, 0x97}, {0x99, 0x9A}}, execute, ground);
        add(state, {{0x9C, 0x9C}}, ignore, ground);
        add(state, {{0x1B, 0x1B}}, clear, escape);
        add(state, {{0x9D, 0x9D}}, oscStart, oscString);
        add(state, {{0x98, 0x98}, {0x9E, 0x9E}}, ignore, sosPmApcString);
        add(state, {{0x9F, 0x9F}}, oscStart, apcString);
        add(state, {{0x9B, 0x9B}}, clear, csiEntry);
        add(state, {{0x90, 0x90}}, clear, dcsEntry);
    }

    constexpr void addEscape() {
        add(ground, c0, execute, ground);
        add(ground, printable, print, ground);

        add(escape, c0, execute, escape);
        add(escape, del, ignore, escape);
        add(escape, intermediate, collect, escapeIntermediate);
        add(escape, {{0x30, 0x7E}}, escDispatch, ground);
        add(escape, {{0x50, 0x50}}, clear, dcsEntry);
        add(escape, {{0x58, 0x58}, {0x5E, 0x5E}}, ignore, sosPmApcString);
        add(escape, {{0x5B, 0x5B}}, clear, csiEntry);
        add(escape, {{0x5D, 0x5D}}, oscStart, oscString);
        add(escape, {{0x5F, 0x5F}}, oscStart, apcString);

        add(escapeIntermediate, c0, execute, escapeIntermediate);
        add(escapeIntermediate, del, ignore, escapeIntermediate);
        add(escapeIntermediate, intermediate, collect, escapeIntermediate);
        add(escapeIntermediate, {{0x30, 0x7E}}, escDispatch, ground);
    }

    constexpr void addCsi() {
        for (const ParserState state : {csiEntry, csiParam, csiIntermediate}) {
            add(state, c0, execute, state);
            add(state, del, ignore, state);
            add(state, intermediate, collect, csiIntermediate);
            add(state, final, csiDispatch, ground);
        }
        // A colon that no number goes before stays an error: nothing that is in use begins so.
        add(csiEntry, digitOrSemicolon, param, csiParam);
        add(csiEntry, privateMarker, collect, csiParam);
        add(csiParam, digitOrSemicolon, param, csiParam);
        add(csiParam, colon, param, csiParam);
        add(csiParam, privateMarker, ignore, csiIgnore);
        add(csiIntermediate, anyParameter, ignore, csiIgnore);

        add(csiIgnore, c0, ignore, csiIgnore);
        add(csiIgnore, {{0x20, 0x3F}}, ignore, csiIgnore);
        add(csiIgnore, del, ignore, csiIgnore);
        add(csiIgnore, final, ignore, ground);
    }

    constexpr void addStrings() {
        add(sosPmApcString, c0, ignore, sosPmApcString);
        // With what lies above ASCII: the text of the string is UTF-8, whose bytes are no C1 controls.
        add(sosPmApcString, {{0x20, lastColumn}}, ignore, sosPmApcString);

        for (const ParserState state : {oscString, apcString}) {
            add(state, c0WithoutBell, ignore, state);
            add(state, {{0x20, 0x7F}, {lastColumn, lastColumn}}, oscPut, state);
            add(state, {{0x07, 0x07}, {0x18, 0x18}, {0x1A, 0x1B}, {0x9C, 0x9C}}, oscEnd, ground);
        }
    }

    constexpr void addDcs() {
        for (const ParserState state : {dcsEntry, dcsParam, dcsIntermediate}) {
            add(state, c0, ignore, state);
            add(state, del, ignore, state);
            add(state, intermediate, collect, dcsIntermediate);
            add(state, final, dcsHook, dcsPassthrough);
        }
        add(dcsEntry, colon, ignore, dcsIgnore);
        add(dcsEntry, digitOrSemicolon, param, dcsParam);
        add(dcsEntry, privateMarker, collect, dcsParam);
        add(dcsParam, digitOrSemicolon, param, dcsParam);
        add(dcsParam, colon, ignore, dcsIgnore);
        add(dcsParam, privateMarker, ignore, dcsIgnore);
        add(dcsIntermediate, anyParameter, ignore, dcsIgnore);

        add(dcsIgnore, c0, ignore, dcsIgnore);
        add(dcsIgnore, {{0x20, 0x7F}}, ignore, dcsIgnore);

        add(dcsPassthrough, c0, dcsPut, dcsPassthrough);
        add(dcsPassthrough, printable, dcsPut, dcsPassthrough);
        add(dcsPassthrough, del, ignore, dcsPassthrough);
        add(dcsPassthrough, {{0x1B, 0x1B}, {0x9C, 0x9C}}, dcsUnhook, ground);
    }

 private:
    TransitionTable& table_;
};

constexpr TransitionTable::TransitionTable() {
    Builder builder(*this);
    for (std::size_t state = 0; state < parserStateCount; ++state)
        builder.addDefaults(static_cast<ParserState>(state));
    builder.addEscape();
    builder.addCsi();
    builder.addStrings();
    builder.addDcs();
}

constexpr TransitionTable transitionTable{};

}  // namespace orvane
