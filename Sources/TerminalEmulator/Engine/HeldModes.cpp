#include "TerminalEmulator/Engine/HeldModes.h"

#include <algorithm>
#include <iterator>
#include <span>

namespace orvane {
namespace {

/// How a mode starts and whether it can change. The numbers are those of DECRQM.
enum class State { set = 1, reset = 2, alwaysSet = 3, alwaysReset = 4 };

struct Mode {
    int number;
    State state;
};

// Both in rising order.
constexpr Mode privateModes[] = {
    {8, State::set},                                // DECARM: keys repeat
    {10, State::reset},                             // toolbar
    {13, State::alwaysReset},                       // a blinking cursor by preference, which programs can only read
    {14, State::alwaysSet},                         // that preference and mode 12 are joined by "exclusive or"
    {18, State::reset},                             // DECPFF
    {19, State::reset},                             // DECPEX
    {30, State::reset},                             // scroll bar
    {34, State::reset},                             // DECRLM
    {35, State::reset},                             // DECHEBM; font shifting
    {36, State::reset},                             // DECHEM
    {38, State::alwaysReset},                       // DECTEK
    {41, State::reset},                             // more(1) fix
    {42, State::reset},                             // DECNRCM: here the national sets can be designated either way
    {43, State::reset},                             // DECGEPM
    {44, State::reset},                             // margin bell
    {46, State::alwaysReset},                       // logging to a file, which a program must not start
    {57, State::reset},                             // DECNAKB
    {60, State::alwaysReset},                       // DECHCCM
    {61, State::reset},                             // DECVCCM
    {63, State::reset},       {64, State::reset},   // DECPCCM
    {67, State::reset},                             // DECBKM
    {68, State::reset},                             // DECKBUM
    {73, State::reset},                             // DECXRLM
    {80, State::reset},                             // DECSDM
    {81, State::reset},                             // DECKPM
    {96, State::reset},                             // DECRLCM
    {97, State::reset},                             // DECCRTSM
    {98, State::reset},                             // DECARSM
    {99, State::reset},                             // DECMCM
    {100, State::reset},                            // DECAAM
    {101, State::reset},                            // DECCANSM
    {102, State::reset},                            // DECNULM
    {103, State::reset},                            // DECHDPXM
    {104, State::reset},                            // DECESKM
    {105, State::reset},      {106, State::reset},  // DECOSCNM
    {112, State::reset},      {113, State::reset},
    {114, State::reset},      {1001, State::reset},  // highlight tracking of the mouse
    {1007, State::reset},                            // the wheel sends cursor keys on the alternate screen
    {1010, State::reset},                            // output scrolls to the bottom
    {1011, State::reset},                            // a key scrolls to the bottom
    {1014, State::reset},                            // fast scrolling
    {1034, State::reset},                            // Meta sets the eighth bit
    {1035, State::set},                              // modifiers of Num Lock
    {1036, State::set},                              // Meta sends an escape character first
    {1037, State::reset},                            // Delete sends DEL
    {1039, State::set},                              // Alt sends an escape character first
    {1040, State::reset},                            // the selection stays when it is not highlighted
    {1041, State::reset},                            // selecting goes to the clipboard
    {1042, State::reset},                            // the bell marks the window urgent
    {1043, State::reset},                            // the bell raises the window
    {1044, State::reset},                            // what was copied last is used again
    {1046, State::set},                              // there is an alternate screen
    {1050, State::reset},                            // function keys of terminfo, Sun, HP, SCO, X11R6 and the VT220
    {1051, State::reset},     {1052, State::reset},
    {1053, State::reset},     {1060, State::reset},
    {1061, State::reset},     {2001, State::reset},  // the mouse buttons and pasting for readline
    {2002, State::reset},     {2003, State::reset},
    {2005, State::reset},     {2006, State::reset},
    {2027, State::alwaysSet},  // text is in grapheme clusters
    {2031, State::reset},      // changes of the colour scheme are told
};

constexpr Mode ansiModes[] = {
    {1, State::alwaysReset},   // GATM
    {2, State::reset},         // KAM
    {5, State::alwaysReset},   // SRTM
    {7, State::alwaysReset},   // VEM
    {10, State::alwaysReset},  // HEM
    {11, State::alwaysReset},  // PUM
    {12, State::set},          // SRM: no local echo
    {13, State::alwaysReset},  // FEAM
    {14, State::alwaysReset},  // FETM
    {15, State::alwaysReset},  // MATM
    {16, State::alwaysReset},  // TTM
    {17, State::alwaysReset},  // SATM
    {18, State::alwaysReset},  // TSM
    {19, State::alwaysReset},  // EBM
};

static_assert(std::size(privateModes) + std::size(ansiModes) <= HeldModes::maximumModes);
static_assert(std::ranges::is_sorted(privateModes, {}, &Mode::number));
static_assert(std::ranges::is_sorted(ansiModes, {}, &Mode::number));

/// The modes of one kind and where their bits begin.
struct Kind {
    std::span<const Mode> modes;
    std::size_t firstBit;

    std::optional<std::size_t> indexOf(int number) const {
        const auto found = std::ranges::lower_bound(modes, number, {}, &Mode::number);
        if (found == modes.end() || found->number != number) return std::nullopt;
        return static_cast<std::size_t>(found - modes.begin());
    }
};

constexpr Kind privateKind{privateModes, 0};
constexpr Kind ansiKind{ansiModes, std::size(privateModes)};

using Bits = std::bitset<HeldModes::maximumModes>;

bool set(Bits& bits, const Kind& kind, int number, bool isOn) {
    const auto index = kind.indexOf(number);
    if (!index) return false;
    const State state = kind.modes[*index].state;
    if (state == State::set || state == State::reset) bits.set(kind.firstBit + *index, isOn);
    return true;
}

std::optional<int> stateOf(const Bits& bits, const Kind& kind, int number) {
    const auto index = kind.indexOf(number);
    if (!index) return std::nullopt;
    const State state = kind.modes[*index].state;
    if (state == State::alwaysSet || state == State::alwaysReset) return static_cast<int>(state);
    return static_cast<int>(bits.test(kind.firstBit + *index) ? State::set : State::reset);
}

void setInitially(Bits& bits, const Kind& kind) {
    for (std::size_t i = 0; i < kind.modes.size(); ++i)
        bits.set(kind.firstBit + i, kind.modes[i].state == State::set);
}

}  // namespace

HeldModes::HeldModes() {
    setInitially(isOn_, privateKind);
    setInitially(isOn_, ansiKind);
}

bool HeldModes::setPrivate(int mode, bool isOn) {
    return set(isOn_, privateKind, mode, isOn);
}

bool HeldModes::setAnsi(int mode, bool isOn) {
    return set(isOn_, ansiKind, mode, isOn);
}

std::optional<int> HeldModes::privateState(int mode) const {
    return stateOf(isOn_, privateKind, mode);
}

std::optional<int> HeldModes::ansiState(int mode) const {
    return stateOf(isOn_, ansiKind, mode);
}

}  // namespace orvane
