#include "TerminalEmulator/Engine/CapabilityRequest.h"

#include <algorithm>
#include <iterator>
#include <optional>
#include <span>
#include <string>

#include "TerminalEmulator/Engine/Hex.h"
#include "TerminalEmulator/Engine/PayloadText.h"

namespace orvane {
namespace {

/// A capability by its names in terminfo and, where it has one, in termcap.
struct Capability {
    std::string_view terminfo;
    std::string_view termcap;
    std::string_view value;
};

/// Those that are there or not, without a value.
constexpr std::string_view flags[] = {"Tc", "Su", "XT", "AX", "am", "bce", "xenl", "km", "mir", "msgr"};

constexpr Capability strings[] = {
    {"colors", "Co", "256"},
    {"RGB", "", "8/8/8"},
    {"Ms", "", "\033]52;%p1%s;%p2%s\a"},
    {"Ss", "", "\033[%p1%d q"},
    {"Se", "", "\033[2 q"},
    {"Smulx", "", "\033[4:%p1%dm"},
    {"Setulc", "", "\033[58:2::%p1%{65536}%/%d:%p1%{256}%/%{255}%&%d:%p1%{255}%&%dm"},
    {"setrgbf", "", "\033[38:2::%p1%d:%p2%d:%p3%dm"},
    {"setrgbb", "", "\033[48:2::%p1%d:%p2%d:%p3%dm"},
    {"Sync", "", "\033[?2026%?%p1%{1}%-%tl%eh%;"},
    {"BE", "", "\033[?2004h"},
    {"BD", "", "\033[?2004l"},
    {"fe", "", "\033[?1004h"},
    {"fd", "", "\033[?1004l"},
    {"smcup", "ti", "\033[?1049h"},
    {"rmcup", "te", "\033[?1049l"},
    {"smxx", "", "\033[9m"},
    {"rmxx", "", "\033[29m"},
    {"kbs", "kb", "\177"},
    {"kcbt", "kB", "\033[Z"},
    {"kich1", "kI", "\033[2~"},
    {"kdch1", "kD", "\033[3~"},
    {"kpp", "kP", "\033[5~"},
    {"knp", "kN", "\033[6~"},
    {"kf1", "k1", "\033OP"},
    {"kf2", "k2", "\033OQ"},
    {"kf3", "k3", "\033OR"},
    {"kf4", "k4", "\033OS"},
    {"kf5", "k5", "\033[15~"},
    {"kf6", "k6", "\033[17~"},
    {"kf7", "k7", "\033[18~"},
    {"kf8", "k8", "\033[19~"},
    {"kf9", "k9", "\033[20~"},
    {"kf10", "k;", "\033[21~"},
    {"kf11", "F1", "\033[23~"},
    {"kf12", "F2", "\033[24~"},
};

/// Keys that DECCKM changes, by the last character of what they send.
constexpr Capability cursorKeys[] = {
    {"kcuu1", "ku", "A"}, {"kcud1", "kd", "B"}, {"kcuf1", "kr", "C"},
    {"kcub1", "kl", "D"}, {"khome", "kh", "H"}, {"kend", "@7", "F"},
};

const Capability* find(std::span<const Capability> table, std::string_view name) {
    for (const Capability& row : table) {
        if (name == row.terminfo || (name == row.termcap && !name.empty())) return &row;
    }
    return nullptr;
}

/// The value; empty for a flag that is there.
std::optional<std::string> valueOf(const TerminalState& state, std::string_view name) {
    if (name == "TN" || name == "name") return state.options.termName;
    if (std::ranges::find(flags, name) != std::end(flags)) return std::string();
    if (const Capability* row = find(strings, name)) return std::string(row->value);
    if (const Capability* row = find(cursorKeys, name))
        return (state.modes.applicationCursor ? "\033O" : "\033[") + std::string(row->value);
    return std::nullopt;
}

}  // namespace

void CapabilityRequest::answer(std::string_view data) {
    std::string known;
    std::optional<std::string_view> unknown;
    PayloadText::Parts parts(data);
    for (auto part = parts.next(); part && !unknown; part = parts.next()) {
        const auto name = Hex::decode(*part);
        const auto value = name ? valueOf(state, *name) : std::nullopt;
        if (!value) {
            unknown = part;
            continue;
        }
        if (!known.empty()) known += ';';
        known += Hex::encode(*name);
        if (!value->empty()) known += '=' + Hex::encode(*value);
    }
    if (!known.empty()) state.sendDcs("1+r" + known);
    // What is no hexadecimal text is not sent back: it could hold anything.
    if (unknown) state.sendDcs("0+r" + (Hex::decode(*unknown) ? std::string(*unknown) : std::string()));
}

}  // namespace orvane
