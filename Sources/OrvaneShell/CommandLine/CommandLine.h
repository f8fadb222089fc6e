#pragma once

#include <string>
#include <vector>

namespace orvane {

/// The program: carries out what was typed after its name and returns the exit status.
int runCommandLine(const std::vector<std::string>& words);

}  // namespace orvane
