#pragma once

#include <expected>
#include <string>

#include "OrvaneCore/Support/L10n.h"

namespace orvane {

/// A folder that a project can have: absolute and with links resolved, as it is known to every program that works in
/// it; agents name their transcripts after that path. The error is a line for a person. May block for long when the
/// folder is on a network that is down.
std::expected<std::string, std::string> usableFolder(const L10n& l10n, const std::string& path);

}  // namespace orvane
