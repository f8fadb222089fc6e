#pragma once

#include <expected>
#include <string>
#include <vector>

#include "OrvaneShell/CommandLine/ClientContext.h"
#include "TerminalEmulator/Terminal.h"

/// What the verbs that use the emulator alone have in common.
namespace orvane::TerminalArguments {

/// "--cols", "--rows", "--scrollback" and "--json".
std::vector<Parameter> parameters();

struct Range {
    int least = 0;
    int most = 0;
};

/// The number that was typed for an option, or what it is without one. The error is told; it is the exit status.
std::expected<int, int> number(ClientContext& client, const Arguments& arguments, const std::string& name, int without,
                               Range range);

std::expected<TerminalOptions, int> optionsOf(ClientContext& client, const Arguments& arguments);

/// As text, or with "--json" as JSON.
void printScreen(ClientContext& client, const Arguments& arguments, const Terminal& terminal);

}  // namespace orvane::TerminalArguments
