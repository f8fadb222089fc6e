#include "OrvaneCore/Support/ShellText.h"

namespace orvane {

std::string shellQuoted(std::string_view text) {
    std::string quoted = "'";
    for (const char byte : text) {
        if (byte == '\'') {
            quoted += R"('\'')";
        } else {
            quoted += byte;
        }
    }
    return quoted + "'";
}

}  // namespace orvane
