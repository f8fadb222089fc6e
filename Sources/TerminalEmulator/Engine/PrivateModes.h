#pragma once

#include "TerminalEmulator/Engine/ModeFunctions.h"
#include "TerminalEmulator/Engine/TerminalState.h"

/// The private modes that have an effect.
namespace orvane::PrivateModes {

struct Mode {
    int number = 0;
    void (*set)(TerminalState& state, ModeFunctions::Switch to) = nullptr;
    bool (*isOn)(const TerminalState& state) = nullptr;
};

/// Null for a mode that is not one of them.
const Mode* find(int number);

}  // namespace orvane::PrivateModes
