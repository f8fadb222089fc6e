#include "Platform/HostName.h"

#include <unistd.h>

#include <array>

namespace orvane {

std::string hostName() {
    std::array<char, 256> name{};  // POSIX allows 255 bytes
    return gethostname(name.data(), name.size() - 1) == 0 ? std::string(name.data()) : std::string();
}

}  // namespace orvane
