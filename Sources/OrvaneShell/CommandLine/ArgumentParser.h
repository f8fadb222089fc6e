#pragma once

#include <expected>
#include <string>
#include <vector>

#include "OrvaneCore/Support/L10n.h"
#include "OrvaneShell/CommandLine/Verb.h"

namespace orvane {

/// Reads what was typed after a verb. The error is one line for a person.
std::expected<Arguments, std::string> parseArguments(const Verb& verb, const std::vector<std::string>& words,
                                                     const L10n& l10n);

}  // namespace orvane
