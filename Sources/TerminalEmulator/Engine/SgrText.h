#pragma once

#include <string>

#include "TerminalEmulator/Buffer/Attribute.h"

namespace orvane {

/// The parameters of SGR that make the look, whatever was before: "0;1;38:5:208".
std::string sgrText(const Attribute& attribute);

}  // namespace orvane
