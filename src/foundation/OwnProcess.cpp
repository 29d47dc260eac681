#include "foundation/OwnProcess.h"

#include <fcntl.h>
#include <unistd.h>

#include <csignal>

namespace brightsweep {

void settleProcess() {
    // open() takes the lowest free descriptor.
    for (const int number : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        const int unusable = number == STDIN_FILENO ? O_WRONLY : O_RDONLY;
        if (::fcntl(number, F_GETFD) < 0 && ::open("/dev/null", unusable) != number)
            ::_exit(1);
    }
    ::signal(SIGXFSZ, SIG_IGN);
}

} // namespace brightsweep
