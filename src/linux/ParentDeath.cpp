#include "linux/ParentDeath.h"

#include <signal.h>
#include <sys/prctl.h>
#include <unistd.h>

namespace brightsweep {

void dieWithParent(pid_t parent) {
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    if (::getppid() != parent)
        ::raise(SIGKILL);
}

} // namespace brightsweep
