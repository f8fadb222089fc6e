#pragma once

#include <cstdio>
#include <memory>
#include <string>

#include "OrvaneCore/Support/ShellText.h"

namespace orvane {

/// What bash prints that runs a script without the user's profile.
inline std::string outputOfBash(const std::string& script) {
    const std::string command = "exec bash --noprofile --norc -c " + shellQuoted(script);
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> output(popen(command.c_str(), "r"), pclose);
    std::string text;
    for (int byte = 0; (byte = std::getc(output.get())) != EOF;)
        text += static_cast<char>(byte);
    return text;
}

}  // namespace orvane
