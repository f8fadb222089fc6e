#include "Platform/StandardDescriptors.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <initializer_list>

namespace orvane::StandardDescriptors {

void reserve() {
    for (const int descriptor : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        if (fcntl(descriptor, F_GETFD) != -1 || errno != EBADF) continue;
        // The lowest free number is this one, since those below are open. Opened the wrong way round on purpose: a
        // result that cannot be delivered must not look delivered. Children of ours are to have it too.
        (void)!open("/dev/null", descriptor == STDIN_FILENO ? O_WRONLY : O_RDONLY);
    }
}

}  // namespace orvane::StandardDescriptors
