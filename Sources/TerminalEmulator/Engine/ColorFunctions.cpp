#include "TerminalEmulator/Engine/ColorFunctions.h"

#include <fmt/format.h>

#include "TerminalEmulator/Engine/ColorSpec.h"
#include "TerminalEmulator/Engine/PayloadText.h"

namespace orvane::ColorFunctions {
namespace {

/// Of one command; as many as there are colours, twice.
constexpr int maximumPairs = 512;

constexpr int foregroundCode = 10;
constexpr int backgroundCode = 11;
constexpr int cursorCode = 12;

std::optional<std::size_t> paletteIndex(const TerminalState& state, std::string_view text) {
    const auto index = PayloadText::number(text);
    if (!index || static_cast<std::size_t>(*index) >= state.colors.ansiColors.size()) return std::nullopt;
    return static_cast<std::size_t>(*index);
}

TerminalColor dynamicColor(const TerminalState& state, int code) {
    if (code == foregroundCode) return foreground(state);
    return code == backgroundCode ? background(state) : cursor(state);
}

void setDynamicColor(TerminalState& state, int code, const TerminalColor& color) {
    switch (code) {
        case foregroundCode:
            state.colors.foreground = color;
            state.delegate.setForegroundColor(color);
            break;
        case backgroundCode:
            state.colors.background = color;
            state.delegate.setBackgroundColor(color);
            break;
        case cursorCode:
            state.colors.cursor = color;
            state.delegate.setCursorColor(color);
            break;
        default:
            break;
    }
}

void setEntry(TerminalState& state, std::size_t index, const TerminalColor& color) {
    state.colors.ansiColors[index] = color;
    state.markAll();
    state.delegate.colorChanged(static_cast<int>(index));
}

}  // namespace

TerminalColor foreground(const TerminalState& state) {
    if (state.colors.foreground) return *state.colors.foreground;
    const auto given = state.delegate.getColors();
    return given ? given->foreground : state.colors.defaultForeground;
}

TerminalColor background(const TerminalState& state) {
    if (state.colors.background) return *state.colors.background;
    const auto given = state.delegate.getColors();
    return given ? given->background : state.colors.defaultBackground;
}

TerminalColor cursor(const TerminalState& state) {
    return state.colors.cursor ? *state.colors.cursor : foreground(state);
}

void setPalette(TerminalState& state, std::string_view payload, StringEnd end) {
    PayloadText::Parts parts(payload);
    for (int pair = 0; pair < maximumPairs; ++pair) {
        const auto number = parts.next();
        const auto spec = parts.next();
        if (!number || !spec) return;
        const auto index = paletteIndex(state, *number);
        if (!index) continue;
        if (*spec == "?") {
            tell(state, fmt::format("4;{}", *index), state.colors.ansiColors[*index], end);
        } else if (const auto color = ColorSpec::parse(*spec)) {
            setEntry(state, *index, *color);
        }
    }
}

void setDynamic(TerminalState& state, int code, std::string_view payload, StringEnd end) {
    PayloadText::Parts parts(payload);
    for (; code <= cursorCode; ++code) {
        const auto spec = parts.next();
        if (!spec) return;
        if (*spec == "?") {
            tell(state, std::to_string(code), dynamicColor(state, code), end);
        } else if (const auto color = ColorSpec::parse(*spec)) {
            setDynamicColor(state, code, *color);
        }
    }
}

void resetPalette(TerminalState& state, std::string_view payload) {
    if (payload.empty()) {
        state.colors.ansiColors = state.colors.defaultAnsiColors;
        state.markAll();
        state.delegate.colorChanged({});
        return;
    }
    PayloadText::Parts parts(payload);
    for (int entry = 0; entry < maximumPairs; ++entry) {
        const auto number = parts.next();
        if (!number) return;
        if (const auto index = paletteIndex(state, *number))
            setEntry(state, *index, state.colors.defaultAnsiColors[*index]);
    }
}

void resetForeground(TerminalState& state) {
    state.colors.foreground.reset();
    state.delegate.setForegroundColor(foreground(state));
}

void resetBackground(TerminalState& state) {
    state.colors.background.reset();
    state.delegate.setBackgroundColor(background(state));
}

void resetCursor(TerminalState& state) {
    state.colors.cursor.reset();
    state.delegate.setCursorColor(std::nullopt);
}

void tell(TerminalState& state, std::string_view code, const TerminalColor& color, StringEnd end) {
    state.sendOsc(fmt::format("{};{}", code, ColorSpec::format(color)), end);
}

}  // namespace orvane::ColorFunctions
