#include "Platform/SystemError.h"

#include <cerrno>
#include <system_error>

namespace orvane {

std::string SystemError::message() const {
    return number == 0 ? what : what + ": " + std::generic_category().message(number);
}

SystemError SystemError::last(std::string_view action, std::string_view subject) {
    return of(errno, action, subject);
}

SystemError SystemError::of(int number, std::string_view action, std::string_view subject) {
    std::string what(action);
    if (!subject.empty()) {
        what += ' ';
        what += subject;
    }
    return {std::move(what), number};
}

}  // namespace orvane
