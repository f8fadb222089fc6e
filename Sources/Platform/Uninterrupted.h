#pragma once

#include <cerrno>

namespace orvane {

/// The result of a system call that is made again as long as a signal cuts it short.
template <typename Call>
auto uninterrupted(Call call) {
    auto result = call();
    while (result < 0 && errno == EINTR)
        result = call();
    return result;
}

}  // namespace orvane
