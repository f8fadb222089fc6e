#include "Platform/Environment.h"

#include <unistd.h>

#include <string_view>

namespace orvane {

Environment currentEnvironment() {
    Environment environment;
    for (char** entry = environ; entry != nullptr && *entry != nullptr; ++entry) {
        const std::string_view text(*entry);
        const auto sign = text.find('=');
        if (sign != std::string_view::npos) environment.emplace(text.substr(0, sign), text.substr(sign + 1));
    }
    return environment;
}

std::string variable(const Environment& environment, const std::string& name) {
    const auto found = environment.find(name);
    return found == environment.end() ? std::string() : found->second;
}

}  // namespace orvane
